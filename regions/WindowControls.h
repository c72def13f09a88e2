#pragma once
#include <QList>
#include <QString>
#include <functional>

class QObject;
class QWidget;

namespace td {

// One thing of a window that has a caption or a tip: a widget, an action, a menu or a toolbar button.
struct WindowControl {
    QObject* object = nullptr;
    QString key;  // its name, or name(index) for a member of an array or a toolbar button
    bool hasCaption = false;
    bool wholeFont = false;  // the three data-bound controls take the whole interface font
    std::function<QString()> caption;
    std::function<void(const QString&)> setCaption;
    std::function<QString()> toolTip;
    std::function<void(const QString&)> setToolTip;
};

// The window's controls as the window text sees them: the data-bound controls count as one control
// each (their parts keep their own texts), other windows inside are not entered, and Qt's own inner
// widgets are left alone.
QList<WindowControl> WindowControls(QWidget* window);

}  // namespace td
