#include "shell/services/IniDocument.h"
#include <QFile>
#include <QStringDecoder>
#include "shell/services/FilePaths.h"

namespace td {
namespace {

constexpr QByteArrayView kUtf8Mark("\xEF\xBB\xBF");

bool isHeader(const QString& trimmed)
{
    return trimmed.startsWith(u'[') && trimmed.contains(u']');
}

QString headerName(const QString& trimmed)
{
    return trimmed.mid(1, trimmed.indexOf(u']') - 1).trimmed();
}

// Key part of a key line; the whole line when it has no "=".
QString keyOf(const QString& trimmed)
{
    const int eq = int(trimmed.indexOf(u'='));
    return (eq < 0 ? trimmed : trimmed.left(eq)).trimmed();
}

// Blanks around a value go, and so does one pair of matching quotes around it.
QString unquote(QString v)
{
    v = v.trimmed();
    if (v.size() >= 2 && (v.front() == u'"' || v.front() == u'\'') && v.back() == v.front())
        v = v.mid(1, v.size() - 2);
    return v;
}

}  // namespace

IniDocument IniDocument::load(const QString& file)
{
    IniDocument doc;
    QFile f(file);
    if (!f.open(QIODevice::ReadOnly))
        return doc;
    // One byte-order mark is the file's; it goes back on save. Any other is text, so that a file that
    // begins with two (two files joined) reads the same before and after a write.
    const QByteArray bytes = f.readAll();
    doc.byteOrderMark_ = bytes.startsWith(kUtf8Mark);
    QStringDecoder decode(QStringDecoder::Utf8, QStringConverter::Flag::ConvertInitialBom);
    QString text = decode(QByteArrayView(bytes).sliced(doc.byteOrderMark_ ? kUtf8Mark.size() : 0));
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    doc.lines_ = text.split(u'\n');
    if (!doc.lines_.isEmpty() && doc.lines_.back().isEmpty())
        doc.lines_.removeLast();
    return doc;
}

bool IniDocument::save(const QString& file) const
{
    QByteArray bytes = byteOrderMark_ ? kUtf8Mark.toByteArray() : QByteArray();
    for (const QString& line : lines_) {
        bytes += line.toUtf8();
        bytes += '\n';
    }
    return ReplaceFileContents(file, bytes, true);
}

int IniDocument::findSection(const QString& section) const
{
    const QString wanted = section.trimmed();
    for (int i = 0; i < lines_.size(); ++i) {
        const QString t = lines_[i].trimmed();
        if (isHeader(t) && headerName(t).compare(wanted, Qt::CaseInsensitive) == 0)
            return i;
    }
    return -1;
}

int IniDocument::sectionEnd(int header) const
{
    int i = header + 1;
    while (i < lines_.size() && !isHeader(lines_[i].trimmed()))
        ++i;
    return i;
}

int IniDocument::findKey(int header, const QString& key) const
{
    const QString wanted = key.trimmed();
    const int end = sectionEnd(header);
    for (int i = header + 1; i < end; ++i) {
        const QString t = lines_[i].trimmed();
        if (t.isEmpty() || t.startsWith(u';'))
            continue;
        if (keyOf(t).compare(wanted, Qt::CaseInsensitive) == 0)
            return i;
    }
    return -1;
}

std::optional<QString> IniDocument::value(const QString& section, const QString& key) const
{
    const int header = findSection(section);
    if (header < 0)
        return std::nullopt;
    const int line = findKey(header, key);
    if (line < 0)
        return std::nullopt;
    const QString t = lines_[line].trimmed();
    const int eq = int(t.indexOf(u'='));
    return eq < 0 ? QString() : unquote(t.mid(eq + 1));
}

void IniDocument::setValue(const QString& section, const QString& key, const QString& value)
{
    const QString line = key.trimmed() + u'=' + value;
    int header = findSection(section);
    if (header < 0) {
        lines_ << u'[' + section.trimmed() + u']' << line;
        return;
    }
    const int existing = findKey(header, key);
    if (existing >= 0) {
        lines_[existing] = line;
        return;
    }
    // A new key goes behind the last non-blank line of its section.
    int pos = sectionEnd(header);
    while (pos > header + 1 && lines_[pos - 1].trimmed().isEmpty())
        --pos;
    lines_.insert(pos, line);
}

std::optional<QStringList> IniDocument::sectionLines(const QString& section) const
{
    const int header = findSection(section);
    if (header < 0)
        return std::nullopt;
    QStringList out;
    const int end = sectionEnd(header);
    for (int i = header + 1; i < end; ++i) {
        const QString t = lines_[i].trimmed();
        if (!t.isEmpty())
            out << t;
    }
    return out;
}

QStringList IniDocument::sectionNames() const
{
    QStringList names;
    for (const QString& line : lines_) {
        const QString t = line.trimmed();
        if (isHeader(t))
            names << headerName(t);
    }
    return names;
}

bool IniDocument::removeSection(const QString& section)
{
    const int header = findSection(section);
    if (header < 0)
        return false;
    lines_.erase(lines_.begin() + header, lines_.begin() + sectionEnd(header));
    return true;
}

}  // namespace td
