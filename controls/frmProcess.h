#pragma once
#include "controls/UiYield.h"
#include <QDialog>

class QLabel;
class QProgressBar;
class QPushButton;

namespace td {

// The progress window of long jobs. The job keeps the loop; the window keeps the bar, the counter
// text and the cancel flag. Stepping and asking for the flag let the interface run a few dozen
// times a second, so a cancel click arrives while the job goes on.
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

    QString HintText() const;
    double Max() const { return max_; }
    double Value() const { return value_; }
    QPushButton* cancelButton() const { return cmdCancel_; }

private:
    explicit frmProcess(QWidget* parent = nullptr);
    void showBar();

    QLabel* lblHint_ = nullptr;
    QProgressBar* pbrProcess_ = nullptr;
    QPushButton* cmdCancel_ = nullptr;
    QString hint_;
    bool canceled_ = false;
    double min_ = 0, max_ = 0, value_ = 0;
    UiYield yield_;
};

// A number as the counter texts print it: whole numbers without a decimal point.
QString CounterNumber(double value);

}  // namespace td
