#pragma once
#include <QElapsedTimer>
#include <QWidget>
#include <array>

class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;

namespace td {

// The strip below a data view: four move buttons and the position box on the left, the text line,
// and during a load the progress bar and the cancel button on the right.
class StatusStrip : public QWidget {
    Q_OBJECT
public:
    explicit StatusStrip(QWidget* parent = nullptr);

    void StartStatus(const QString& text, qint64 min, qint64 max, bool canCancel);
    void StepStatus(qint64 n);
    void EndStatus();
    bool IsStatusCanceled() const { return canceled_; }
    // Brings the bar up to date and answers the cancel flag; a click on cancel reaches the flag
    // between two slices of a pass.
    bool CheckCancel();

    QString Text() const;
    qint64 Value() const { return value_; }
    qint64 Maximum() const { return max_; }
    void setPosition(const QString& text);
    QLineEdit* positionBox() const { return txtMove_; }
    QPushButton* cancelButton() const { return cmdCancel_; }

signals:
    // "first", "previous", "next" or "last", from the tag of the move button pressed.
    void MoveRequested(const QString& tag);
    void MoveToRequested(qint64 index);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void showCounter();
    void showNow();

    std::array<QPushButton*, 4> cmdMove_{};
    QLineEdit* txtMove_ = nullptr;
    QLabel* lblStatus_ = nullptr;
    QProgressBar* pbrStatus_ = nullptr;
    QPushButton* cmdCancel_ = nullptr;
    bool canceled_ = false;
    qint64 value_ = 0;
    qint64 max_ = 0;
    QString text_;
    QElapsedTimer sinceRepaint_;
};

}  // namespace td
