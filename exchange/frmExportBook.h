#pragma once
#include "controls/WindowFrame.h"
#include <QWidget>
#include <functional>

class QLabel;
class QPushButton;

namespace td {

// The songbook export wizard: writes every song and singer of the database in use to song.db beside
// it. It closes after one export, whatever its outcome.
class frmExportBook : public QWidget {
    Q_OBJECT
public:
    explicit frmExportBook(WindowFrame& frame = NoFrame(), QWidget* parent = nullptr);

    QLabel* lblFrom() const { return lblFrom_; }
    QLabel* lblTo() const { return lblTo_; }
    QPushButton* cmdExport() const { return cmdExport_; }
    QPushButton* cmdClose() const { return cmdClose_; }

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void startExport();

    WindowFrame& frame_;
    QString target_;
    QLabel* lblFrom_ = nullptr;
    QLabel* lblTo_ = nullptr;
    QPushButton* cmdExport_ = nullptr;
    QPushButton* cmdClose_ = nullptr;
};

class Connection;
class JobHost;

// Runs a songbook job, with the progress window, on a connection of its own to the database in use,
// and waits for its end. Both wizards run theirs so.
void RunBookJob(QWidget* window, const std::function<void(Connection&, JobHost&)>& job);
// Closes a wizard, also when it lives inside the frame.
void CloseBookWindow(QWidget* window);

}  // namespace td
