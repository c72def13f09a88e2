#include "shell/services/Ini.h"
#include "shell/services/AppPaths.h"
#include "shell/services/IniDocument.h"
#include "shell/services/Platform.h"
#include <QFileInfo>

namespace td {
namespace {

// The profile functions read through a buffer of this many characters, terminator included.
constexpr int kReadBuffer = 255;

QString& appIniFile()
{
    static QString file;
    return file;
}

}  // namespace

QString IniRead(const QString& file, const QString& section, const QString& key, const QString& def)
{
    const auto v = IniDocument::load(file).value(section, key);
    if (!v)
        return def.left(kReadBuffer - 1);
    return v->left(kReadBuffer - 1);
}

bool IniWrite(const QString& file, const QString& section, const QString& key, const QString& value)
{
    if (file.isEmpty() || section.trimmed().isEmpty() || key.trimmed().isEmpty())
        return false;
    IniDocument doc = IniDocument::load(file);
    doc.setValue(section, key, value);
    return doc.save(file);
}

int IniReadSection(const QString& file, const QString& section, TextArray& names)
{
    names = NewTextArray();
    const auto lines = IniDocument::load(file).sectionLines(section);
    if (!lines)
        return 0;
    for (const QString& line : *lines) {
        const QChar first = line.front();
        if (first == u';' || first == u'\'' || first == u'/')
            continue;
        const int eq = int(line.indexOf(u'='));
        AppendItem(names, eq < 0 ? line : line.left(eq).trimmed());
    }
    return UBound(names);
}

bool IniDeleteSection(const QString& file, const QString& section)
{
    if (QFileInfo(file).isDir())
        return false;
    IniDocument doc = IniDocument::load(file);
    doc.removeSection(section);
    return doc.save(file);
}

bool IniSetAppFile(const QString& file)
{
    appIniFile() = file;
    return true;
}

QString AppIniFile()
{
    if (appIniFile().isEmpty())
        IniSetAppFile(AppPath() + u'/' + AppExeName() + QStringLiteral(".ini"));
    return appIniFile();
}

QString AppIniRead(const QString& key, const QString& def)
{
    return IniRead(AppIniFile(), QStringLiteral("Default"), key, def);
}

bool AppIniWrite(const QString& key, const QString& value)
{
    return IniWrite(AppIniFile(), QStringLiteral("Default"), key, value);
}

QString RegRead(long root, const QString& subkey, const QString& valueName, const QString& def)
{
    // The desktop keeps the general font where the old system kept the text editor's font.
    const bool currentUser = root == 0;
    if (currentUser &&
        subkey.compare(QLatin1String("Software\\Microsoft\\Notepad"), Qt::CaseInsensitive) == 0 &&
        valueName.compare(QLatin1String("lfFaceName"), Qt::CaseInsensitive) == 0) {
        const QString name = Platform().desktopFontName();
        return name.isEmpty() ? def : name;
    }
    return def;
}

}  // namespace td
