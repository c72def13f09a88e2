#pragma once
#include <QFrame>

namespace td {

// A thin bar the operator drags to move the border between two panels. It reports where the mouse
// would put it; the owner holds it to its limits and lays the panels out.
class SplitterBar : public QFrame {
    Q_OBJECT
public:
    SplitterBar(Qt::Orientation orientation, QWidget* parent);

signals:
    // The new left (vertical bar) or top (horizontal bar) in the parent's coordinates.
    void dragged(int position);

protected:
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    Qt::Orientation orientation_;
};

}  // namespace td
