#pragma once
#include <QObject>

class QMenuBar;

namespace td {

// Alt and a letter opens the menu of the menu bar with that access key, even where a button of a child
// window carries the same letter: Qt would take such a key as ambiguous and only focus the button. A
// button keeps its access key wherever no menu of the bar claims the letter.
class MenuAccessKeys : public QObject {
    Q_OBJECT
public:
    explicit MenuAccessKeys(QMenuBar* bar);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QMenuBar* bar_;
};

}  // namespace td
