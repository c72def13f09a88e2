#pragma once
#include "controls/WindowFrame.h"
#include "shell/services/TextArray.h"
#include <QWidget>
#include <functional>
#include <memory>

class QComboBox;
class QLabel;
class QProgressBar;
class QPushButton;

namespace td {

class DropDownCombo;
class JobRunner;

// Copies the tracks of a Video CD into a directory of a library named after the disc's identity, and
// adds each of them to the songbook.
class frmCopyDisc : public QWidget {
    Q_OBJECT
public:
    explicit frmCopyDisc(WindowFrame& frame = NoFrame(), QWidget* parent = nullptr);
    ~frmCopyDisc() override;

    // Deletes what psFrom names ("dir/*.*" for all files of a folder) without asking; true when all of
    // it went. The owner window is kept for the platform call's sake; nothing is shown over it.
    static bool DeleteFile(QWidget* owner, const QString& psFrom, const QString& psTo);

    // The songbook's AddFiles, which makes songs of the files given; set by the frame at start.
    using AddFilesHook = std::function<int(const TextArray& files)>;
    static void SetAddFiles(AddFilesHook hook);

    QComboBox* cboCDROM() const;
    QComboBox* cboLibrary() const;
    QPushButton* cmdCopy() const { return cmdCopy_; }
    QPushButton* cmdCancel() const { return cmdCancel_; }
    QProgressBar* pgbCopy() const { return pgbCopy_; }
    QLabel* lblCopy() const { return lblCopy_; }
    // True from the start of the copy loop until its controls are enabled again.
    bool copying() const { return copying_; }

signals:
    // The copy loop has ended and the window is ready again.
    void CopyEnded();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void loadDrives();
    void loadLibraries();
    void copyClicked();
    // Asks until the drive holds a Video CD; the root of its files, or empty text when cancelled.
    QString waitForVideoCd(const QString& drive);
    // Answers false when the operator declined.
    bool confirmDirectory(const QString& directory, int count);
    void startLoop(const QString& directory, const TextArray& tracks);
    void showStep(int i, int n);
    void endLoop();
    void enableControls(bool enabled);
    void closeWindow();

    WindowFrame& frame_;
    DropDownCombo* cboCDROM_ = nullptr;
    DropDownCombo* cboLibrary_ = nullptr;
    QPushButton* cmdCopy_ = nullptr;
    QPushButton* cmdCancel_ = nullptr;
    QProgressBar* pgbCopy_ = nullptr;
    QLabel* lblCopy_ = nullptr;
    bool copying_ = false;
    std::unique_ptr<JobRunner> runner_;
};

}  // namespace td
