#include "shell/services/Translate.h"
#include "shell/services/AppPaths.h"
#include "shell/services/FilePaths.h"
#include "shell/services/Ini.h"
#include "shell/services/TextStore.h"

namespace td {
namespace {

struct InterfaceLanguage {
    QString region;
    QString resourceText;   // the whole string.txt, searched at each lookup
};

InterfaceLanguage& language()
{
    static InterfaceLanguage lang;
    return lang;
}

QString regionIni() { return AppPath() + QStringLiteral("/Region.ini"); }

}  // namespace

QString TranslateText(const QString& text)
{
    if (text.isEmpty())
        return {};
    if (language().resourceText.isEmpty())
        SetInterfaceRegion(GetDefaultRegion());

    QString rest = text;
    QString accelerator;
    if (rest.size() >= 5 && rest.right(5).startsWith(QLatin1String(" (&"))) {
        accelerator = rest.right(5);
        rest.chop(5);
    }
    const QString dots = QStringLiteral(" ...");
    const bool hadDots = rest.contains(dots);
    if (hadDots)
        rest.remove(rest.indexOf(dots), dots.size());

    const QString answer = ReadTextValue(language().resourceText, QStringLiteral("Resource"), rest, QString());
    if (answer.isEmpty())
        return rest;
    return answer + (hadDots ? dots : QString()) + accelerator;
}

QString GetDefaultRegion()
{
    return IniRead(regionIni(), QStringLiteral("Home"), QStringLiteral("Default"), QStringLiteral("English"));
}

bool SetInterfaceRegion(const QString& name)
{
    if (name.isEmpty())
        return false;
    try {
        language().resourceText = ReadTextStore(GetRegionFile(name));
    } catch (const std::exception&) {
        // A damaged text file counts as none: the interface falls back to its English texts.
        language().resourceText.clear();
    }
    if (language().resourceText.isEmpty())
        return false;
    IniWrite(regionIni(), QStringLiteral("Home"), QStringLiteral("Default"), name);
    language().region = name;
    return true;
}

QString GetRegionFile(const QString& name)
{
    const QString path = AppPath() + QStringLiteral("/Region/") + name + QStringLiteral("/string.txt");
    return FileKind(path) == QLatin1String("f") ? path : QString();
}

QString InterfaceRegion() { return language().region; }

void ResetInterfaceRegion() { language() = {}; }

}  // namespace td
