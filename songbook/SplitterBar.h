#pragma once
#include "controls/WindowFrame.h"
#include <QFrame>
#include <QString>

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

// The panels of a list window from left to right: the button bar, the list, the splitter and the
// right-hand panel.
struct SidePanels {
    QWidget* buttons = nullptr;
    QWidget* view = nullptr;
    SplitterBar* bar = nullptr;
    QWidget* right = nullptr;
};

// Lays the panels over the window: the right-hand panel takes what lies right of the splitter at left,
// and no width when it is not wanted. A left at or beyond the window's width goes back to two thirds.
void ArrangeSidePanels(QWidget* window, const SidePanels& panels, int& left, bool rightWanted);
// A splitter position held between 120 twips and the extent less 240 twips.
int SplitterPosition(int position, int extent, const QWidget* window);
// A right-hand panel setting of the application INI ("SongViewProperty"): default "1", true unless 0.
bool ViewSetting(const QString& key);
// Stores such a setting at once, and the check mark of its menu entry follows it.
void StoreViewSetting(WindowFrame& frame, const QString& key, const char* menuEntry, bool visible);

}  // namespace td
