#pragma once
#include "controls/WindowFrame.h"
#include <QWidget>
#include <functional>

class QLabel;
class QPushButton;

namespace td {

class Connection;
class JobHost;
struct CheckSettings;

// "Check songbook": holds the songbook against the disk. Each button runs one check as a long job on a
// connection of its own, writes its report beside the program and opens it in the text editor when it
// found something.
class frmCheckBook : public QWidget {
    Q_OBJECT
public:
    explicit frmCheckBook(WindowFrame& frame = NoFrame(), QWidget* parent = nullptr);

    QPushButton* cmdLibrary() const { return cmdLibrary_; }
    QPushButton* cmdSong() const { return cmdSong_; }
    QPushButton* cmdAddMedia() const { return cmdAddMedia_; }
    QPushButton* cmdDeleteMedia() const { return cmdDeleteMedia_; }
    QPushButton* cmdClose() const { return cmdClose_; }

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    using Check = std::function<void(Connection&, const CheckSettings&, JobHost&)>;
    QPushButton* addRow(const char* name, const char* caption, const char* label, int row);
    // Runs one check to its end; needsLogin: without an open songbook it says "Please login first".
    void run(const Check& check, bool needsLogin);

    WindowFrame& frame_;
    QPushButton* cmdLibrary_ = nullptr;
    QPushButton* cmdSong_ = nullptr;
    QPushButton* cmdAddMedia_ = nullptr;
    QPushButton* cmdDeleteMedia_ = nullptr;
    QPushButton* cmdClose_ = nullptr;
};

}  // namespace td
