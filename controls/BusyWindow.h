#pragma once
#include <QApplication>
#include <QPointer>
#include <QWidget>

namespace td {

// Busy for the life of the object: the hourglass, and the window disabled so that no second
// command starts during a run. Idle again on every way out.
class BusyWindow {
public:
    explicit BusyWindow(QWidget* window)
        : window_(window),
          focus_(QApplication::focusWidget()),
          wasDisabled_(window->testAttribute(Qt::WA_ForceDisabled))
    {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        window_->setEnabled(false);
    }
    ~BusyWindow()
    {
        // A run inside another run leaves the window to the outer one.
        if (wasDisabled_) {
            QApplication::restoreOverrideCursor();
            return;
        }
        window_->setEnabled(true);
        // Disabling took the focus away; the list keeps its keyboard.
        if (focus_ && window_->isAncestorOf(focus_))
            focus_->setFocus();
        QApplication::restoreOverrideCursor();
    }
    BusyWindow(const BusyWindow&) = delete;
    BusyWindow& operator=(const BusyWindow&) = delete;

private:
    QWidget* window_;
    QPointer<QWidget> focus_;
    bool wasDisabled_;
};

// The hourglass alone: the window stays usable, as while the song list fills.
class Hourglass {
public:
    Hourglass() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~Hourglass() { QApplication::restoreOverrideCursor(); }
    Hourglass(const Hourglass&) = delete;
    Hourglass& operator=(const Hourglass&) = delete;
};

}  // namespace td
