#include "regions/WindowControls.h"
#include <QAbstractButton>
#include <QAction>
#include <QGroupBox>
#include <QLabel>
#include <QMdiSubWindow>
#include <QMenu>
#include <QStackedWidget>
#include <QTabWidget>
#include <QToolBar>

namespace td {

namespace {

bool IsDataBoundControl(const QObject* o)
{
    return o->inherits("td::ctlDataView") || o->inherits("td::ctlDataFields") ||
           o->inherits("td::ctlButtons");
}

// An action's tip reads as its text when none was given; that is no designed tip.
QString ActionTip(const QAction* a)
{
    // Qt makes that tip from the text without "..." anywhere and without accelerator marks.
    QString plain = a->text();
    plain.remove(QStringLiteral("..."));
    plain.remove(QLatin1Char('&'));
    const QString tip = a->toolTip();
    return tip == plain.trimmed() || tip == a->text() ? QString() : tip;
}

void AddAction(QList<WindowControl>& out, QAction* a, const QString& key)
{
    WindowControl c;
    c.object = a;
    c.key = key;
    c.hasCaption = true;
    c.caption = [a] { return a->text(); };
    c.setCaption = [a](const QString& t) { a->setText(t); };
    c.toolTip = [a] { return ActionTip(a); };
    c.setToolTip = [a](const QString& t) { a->setToolTip(t); };
    out.append(c);
}

QTabWidget* TabWidgetOfPage(QWidget* w)
{
    auto* stack = qobject_cast<QStackedWidget*>(w->parentWidget());
    return stack ? qobject_cast<QTabWidget*>(stack->parentWidget()) : nullptr;
}

void SetCaptionAccess(WindowControl& c, QWidget* w)
{
    if (auto* b = qobject_cast<QAbstractButton*>(w)) {
        c.caption = [b] { return b->text(); };
        c.setCaption = [b](const QString& t) { b->setText(t); };
    } else if (auto* l = qobject_cast<QLabel*>(w)) {
        c.caption = [l] { return l->text(); };
        c.setCaption = [l](const QString& t) { l->setText(t); };
    } else if (auto* g = qobject_cast<QGroupBox*>(w)) {
        c.caption = [g] { return g->title(); };
        c.setCaption = [g](const QString& t) { g->setTitle(t); };
    } else if (auto* m = qobject_cast<QMenu*>(w)) {
        c.caption = [m] { return m->title(); };
        c.setCaption = [m](const QString& t) { m->setTitle(t); };
    } else if (QTabWidget* tabs = TabWidgetOfPage(w)) {
        c.caption = [tabs, w] { return tabs->tabText(tabs->indexOf(w)); };
        c.setCaption = [tabs, w](const QString& t) { tabs->setTabText(tabs->indexOf(w), t); };
    } else {
        return;
    }
    c.hasCaption = true;
}

void AddToolBar(QList<WindowControl>& out, QToolBar* bar)
{
    int index = 0;
    for (QAction* a : bar->actions()) {
        ++index;  // buttons count from 1, separators included
        if (a->objectName().isEmpty() && !a->isSeparator())
            AddAction(out, a, QStringLiteral("%1(%2)").arg(bar->objectName()).arg(index));
    }
}

void Walk(QList<WindowControl>& out, QWidget* parent)
{
    for (QObject* child : parent->children()) {
        auto* w = qobject_cast<QWidget*>(child);
        if (!w)
            continue;
        const bool menu = qobject_cast<QMenu*>(w) != nullptr;
        if ((w->isWindow() && !menu) || qobject_cast<QMdiSubWindow*>(w))
            continue;
        const QString name = w->objectName();
        if (!name.isEmpty() && !name.startsWith(QLatin1String("qt_"))) {
            WindowControl c;
            c.object = w;
            c.key = name;
            c.wholeFont = IsDataBoundControl(w);
            SetCaptionAccess(c, w);
            c.toolTip = [w] { return w->toolTip(); };
            c.setToolTip = [w](const QString& t) { w->setToolTip(t); };
            out.append(c);
            if (auto* bar = qobject_cast<QToolBar*>(w))
                AddToolBar(out, bar);
        }
        if (!IsDataBoundControl(w))
            Walk(out, w);
    }
}

}  // namespace

QList<WindowControl> WindowControls(QWidget* window)
{
    QList<WindowControl> out;
    Walk(out, window);
    for (QAction* a : window->findChildren<QAction*>()) {
        if (!a->objectName().isEmpty() && !a->objectName().startsWith(QLatin1String("qt_")))
            AddAction(out, a, a->objectName());
    }
    return out;
}

}  // namespace td
