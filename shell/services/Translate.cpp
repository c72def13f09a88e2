#include "shell/services/Translate.h"
#include "shell/services/AppError.h"
#include "shell/services/AppPaths.h"
#include "shell/services/FilePaths.h"
#include "shell/services/Ini.h"
#include "shell/services/ServicesLog.h"
#include "shell/services/TextStore.h"
#include <utility>

namespace td {
namespace {

struct InterfaceLanguage {
    QString region;
    QString resourceText;  // the whole string.txt
    TextSection resource;  // its section [Resource], which every lookup reads
};

InterfaceLanguage& language()
{
    static InterfaceLanguage lang;
    return lang;
}

QString regionIni()
{
    return AppPath() + QStringLiteral("/Region.ini");
}

}  // namespace

namespace {

struct SplitText {
    QString rest;
    QString accelerator;
    bool hadDots = false;
};

// The accelerator is not translated, and dots anywhere in a text move to its end.
SplitText splitText(const QString& text)
{
    SplitText s{text, {}, false};
    if (s.rest.size() >= 5 && s.rest.right(5).startsWith(QLatin1String(" (&"))) {
        s.accelerator = s.rest.right(5);
        s.rest.chop(5);
    }
    const QString dots = QStringLiteral(" ...");
    s.hadDots = s.rest.contains(dots);
    if (s.hadDots)
        s.rest.remove(s.rest.indexOf(dots), dots.size());
    return s;
}

std::function<void(const QString&)>& observer()
{
    static std::function<void(const QString&)> o;
    return o;
}

}  // namespace

QString TranslationKey(const QString& text)
{
    return splitText(text).rest;
}

void SetTranslateObserver(std::function<void(const QString& key)> o)
{
    observer() = std::move(o);
}

QString TranslateText(const QString& text)
{
    if (text.isEmpty())
        return {};
    if (language().resourceText.isEmpty())
        SetInterfaceRegion(GetDefaultRegion());

    const SplitText s = splitText(text);
    if (observer())
        observer()(s.rest);
    const QString answer = language().resource.value(s.rest, QString());
    if (answer.isEmpty())
        return s.rest;
    return answer + (s.hadDots ? QStringLiteral(" ...") : QString()) + s.accelerator;
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
    } catch (const std::exception& e) {
        // A damaged text file counts as none: the interface falls back to its English texts. The
        // lookups that follow try it again each time; the log says so once.
        static QString lastUnread;
        if (std::exchange(lastUnread, name) != name)
            qCWarning(lcServices) << "text file of region" << name << "not read:" << ErrorText(e);
        language().resourceText.clear();
    }
    language().resource = TextSection(language().resourceText, QStringLiteral("Resource"));
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

QString InterfaceRegion()
{
    return language().region;
}

void ResetInterfaceRegion()
{
    language() = {};
}

}  // namespace td
