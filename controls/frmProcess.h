#pragma once
#include <QDialog>

class QLabel;
class QProgressBar;
class QPushButton;

namespace td {

// Position and maximum of a job's progress, as Processing moves them: a step to a value beyond the
// maximum raises it, a plain step (0) adds one and raises a maximum it reaches.
struct ProgressCount {
    double value = 0;
    double max = 0;
    void step(qint64 to);
};

// The progress window of long jobs. The job keeps the loop, on a thread of its own (JobRunner);
// the window keeps the bar, the counter text and the cancel flag, and is only ever touched on the
// interface thread, so a cancel click is seen as soon as it is made.
class frmProcess : public QDialog {
    Q_OBJECT
public:
    // The one shared window; made on first use and again after EndProcess.
    static frmProcess& Instance();

    void StartProcess(const QString& psCaption, const QString& psHint, qint64 plStart, qint64 plMax,
                      bool pbCanCancel);
    void Processing(qint64 plValue);
    bool IsProcessCanceled();
    void ResumeProcess() { canceled_ = false; }
    void EndProcess();
    // Shows a count reached by a job's steps.
    void ShowCount(const ProgressCount& count);
    // Ends the window if one is shown.
    static void EndShown();

    QString HintText() const;
    double Max() const { return count_.max; }
    double Value() const { return count_.value; }
    QPushButton* cancelButton() const { return cmdCancel_; }

private:
    explicit frmProcess(QWidget* parent = nullptr);
    void showBar();

    QLabel* lblHint_ = nullptr;
    QProgressBar* pbrProcess_ = nullptr;
    QPushButton* cmdCancel_ = nullptr;
    QString hint_;
    bool canceled_ = false;
    ProgressCount count_;
};

// A number as the counter texts print it: whole numbers without a decimal point.
QString CounterNumber(double value);

}  // namespace td
