#pragma once
#include <QDialog>
#include <vector>

class QLabel;
class QPushButton;

namespace td {

// A message dialog with a row of n buttons, evenly spaced. The caller shows it modally and reads
// Result: the caption of the button pressed.
class frmMsgbox : public QDialog {
    Q_OBJECT
public:
    explicit frmMsgbox(QWidget* parent = nullptr);

    QString Title;
    QString Result;
    // Creates Buttons(1) to Buttons(n); set once.
    void setNButton(int n);
    QLabel* Prompt() const { return prompt_; }
    QPushButton* Buttons(int index) const { return buttons_.at(std::size_t(index)); }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QLabel* prompt_ = nullptr;
    std::vector<QPushButton*> buttons_;  // element 0: the template
};

}  // namespace td
