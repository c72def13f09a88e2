#include "regions/WindowText.h"
#include "regions/InterfaceFont.h"
#include "regions/WindowControls.h"
#include "shell/services/AppPaths.h"
#include "shell/services/Dialogs.h"
#include "shell/services/Ini.h"
#include "shell/services/Translate.h"
#include <QPointer>
#include <QWidget>
#include <optional>

namespace td {

namespace {

const QString kCaption = QStringLiteral("ControlCaption");
const QString kToolTip = QStringLiteral("ControlToolTip");

std::optional<InterfaceFontSpec>& interfaceFont()
{
    static std::optional<InterfaceFontSpec> font;
    return font;
}

// The windows that have loaded their text, in load order: the ones a language switch reaches.
QList<QPointer<QWidget>>& openWindows()
{
    static QList<QPointer<QWidget>> windows;
    return windows;
}

void RememberWindow(QWidget* window)
{
    QList<QPointer<QWidget>>& windows = openWindows();
    windows.removeIf([window](const QPointer<QWidget>& w) { return w.isNull() || w == window; });
    windows.append(window);
}

void ApplyFont(const WindowControl& c, const InterfaceFontSpec& font)
{
    auto* w = qobject_cast<QWidget*>(c.object);
    if (!w || font.Name.isEmpty())
        return;
    if (c.wholeFont) {
        w->setFont(font.toQFont());
        return;
    }
    QFont f = w->font();
    f.setFamily(font.Name);
    w->setFont(f);
}

QString TranslatedOrEmpty(const QString& text)
{
    return text.isEmpty() ? QString() : TranslateText(text);
}

// A designed caption ending in " - <productname>" shows its own words translated and then the
// product's name, which no translation touches.
void ApplyWindowCaption(QWidget* window, const QString& file)
{
    QString t = IniRead(file, kCaption, window->objectName(), QString());
    const QString marker = QStringLiteral(" - <productname>");
    if (t.contains(marker)) {
        t.remove(marker);
        QString caption = window->windowTitle();
        if (!t.isEmpty())
            caption = TranslateText(t);
        window->setWindowTitle(caption + QStringLiteral(" - ") + AppTitle());
    } else if (!t.isEmpty()) {
        window->setWindowTitle(TranslateText(t));
    }
}

}  // namespace

QString WindowTextFile(const QWidget* window)
{
    return AppPath() + QStringLiteral("/Res") + window->objectName() + QStringLiteral(".tmp");
}

void ExportWindowText(QWidget* window)
{
    RememberWindow(window);
    const QString file = WindowTextFile(window);
    IniWrite(file, kCaption, window->objectName(), window->windowTitle());
    for (const WindowControl& c : WindowControls(window)) {
        const QString caption = c.hasCaption ? c.caption() : QString();
        if (!caption.isEmpty())
            IniWrite(file, kCaption, c.key, caption);
        const QString tip = c.toolTip();
        if (!tip.isEmpty())
            IniWrite(file, kToolTip, c.key, tip);
    }
}

void ApplyWindowText(QWidget* window)
{
    if (!interfaceFont())
        interfaceFont() = GetInterfaceFont();
    const InterfaceFontSpec& font = *interfaceFont();
    const QString file = WindowTextFile(window);
    if (!font.Name.isEmpty()) {
        QFont f = window->font();
        f.setFamily(font.Name);
        window->setFont(f);
    }
    ApplyWindowCaption(window, file);
    for (const WindowControl& c : WindowControls(window)) {
        const QString caption = TranslatedOrEmpty(IniRead(file, kCaption, c.key, QString()));
        const QString tip = TranslatedOrEmpty(IniRead(file, kToolTip, c.key, QString()));
        ApplyFont(c, font);
        if (c.hasCaption)
            c.setCaption(caption);
        c.setToolTip(tip);
    }
}

QString SetRegionAndApply(const QString& name)
{
    if (!SetInterfaceRegion(name))
        return {};
    const QList<QPointer<QWidget>> windows = openWindows();
    for (auto it = windows.rbegin(); it != windows.rend(); ++it)
        if (!it->isNull())
            ApplyWindowText(it->data());
    return QStringLiteral("True");
}

QString GetRegionFolder()
{
    return AppPath() + QStringLiteral("/Region/") + GetDefaultRegion();
}

void ResetWindowTextFont()
{
    interfaceFont().reset();
}

}  // namespace td
