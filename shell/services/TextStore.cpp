#include "shell/services/TextStore.h"
#include "shell/services/AppError.h"
#include "shell/services/FilePaths.h"
#include <QFile>
#include <cstdio>

namespace td {
namespace {

const QString kCrLf = QStringLiteral("\r\n");

QString header(const QString& section)
{
    return kCrLf + u'[' + section + u']' + kCrLf;
}

// The section's body: from its header's own line break up to and including the CR before the next
// header. A body that is not the last one therefore ends in a lone CR.
// A view, since a song file is read key by key for every song of an import.
QStringView sectionBody(QStringView text, qsizetype headerAt, const QString& section)
{
    const QStringView rest = text.mid(headerAt + 3 + section.size());
    const qsizetype next = rest.indexOf(u"\r\n[");
    return next >= 0 ? rest.left(next + 1) : rest;
}

}  // namespace

QString ReadTextStore(const QString& path)
{
    if (path.isEmpty())
        return {};
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        throw AppError(QStringLiteral("File not found: ") + path);
    const QByteArray bytes = f.readAll();
    if (bytes.size() < 2)
        throw AppError(QStringLiteral("Input past end of file"));
    // The first two bytes are the byte-order mark; they are skipped, not checked.
    const qsizetype units = (bytes.size() - 2) / 2;
    QString text(units, Qt::Uninitialized);
    const auto* src = reinterpret_cast<const uchar*>(bytes.constData() + 2);
    for (qsizetype i = 0; i < units; ++i)
        text[i] = QChar(char16_t(src[2 * i] | (src[2 * i + 1] << 8)));
    if (!text.startsWith(kCrLf))
        text.prepend(kCrLf);
    if (!text.endsWith(kCrLf))
        text.append(kCrLf);
    return text;
}

bool WriteTextStore(const QString& path, const QString& text)
{
    if (path.isEmpty())
        return false;
    QByteArray bytes;
    bytes.reserve(2 + text.size() * 2);
    bytes.append(char(0xFF)).append(char(0xFE));
    for (QChar c : text) {
        const char16_t u = c.unicode();
        bytes.append(char(u & 0xFF)).append(char(u >> 8));
    }
    // Written anew each time, to a temporary file renamed over the old one, so a reader never sees half
    // of it. Not flushed to disk as QSaveFile would: a library update writes one file per song, and a
    // flush each made an update of 100,000 songs take many minutes.
    if (!ReplaceFileContents(path, bytes, false))
        throw AppError(QStringLiteral("Path/File access error: ") + path);
    return true;
}

QString ReadTextValue(const QString& text, const QString& section, const QString& key, const QString& def)
{
    const qsizetype at = text.indexOf(header(section));
    if (at < 0)
        return def;
    const QStringView body = sectionBody(text, at, section);
    const QString marker = u'\n' + key + u'=';
    const qsizetype k = body.indexOf(marker);
    if (k < 0)
        return def;
    QStringView value = body.mid(k + marker.size());
    const qsizetype cr = value.indexOf(u'\r');
    if (cr >= 0)
        value = value.left(cr);
    return value.toString();
}

TextSection::TextSection(const QString& text, const QString& section) : text_(text), section_(section)
{
    const qsizetype at = text.indexOf(header(section));
    if (at < 0)
        return;
    // Every line break may start a key, also one inside a value, as the search of ReadTextValue finds it.
    const QStringView body = sectionBody(text, at, section);
    for (qsizetype lf = body.indexOf(u'\n'); lf >= 0; lf = body.indexOf(u'\n', lf + 1)) {
        qsizetype end = lf + 1;
        while (end < body.size() && body[end] != u'=' && body[end] != u'\r' && body[end] != u'\n')
            ++end;
        if (end == body.size() || body[end] != u'=')
            continue;
        const qsizetype cr = body.indexOf(u'\r', end + 1);
        const QString key = body.mid(lf + 1, end - lf - 1).toString();
        if (!values_.contains(key))
            values_.insert(key, body.mid(end + 1, (cr >= 0 ? cr : body.size()) - end - 1).toString());
    }
}

QString TextSection::value(const QString& key, const QString& def) const
{
    if (key.contains(u'=') || key.contains(u'\r') || key.contains(u'\n'))
        return ReadTextValue(text_, section_, key, def);
    const auto it = values_.constFind(key);
    return it == values_.cend() ? def : *it;
}

void WriteTextValue(QString& text, const QString& section, const QString& key, const QString& value)
{
    const qsizetype at = text.indexOf(header(section));
    if (at < 0) {
        text += header(section) + key + u'=' + value + kCrLf;
        return;
    }
    const QString oldBody = sectionBody(text, at, section).toString();
    const QString marker = u'\n' + key + u'=';
    const qsizetype k = oldBody.indexOf(marker);
    QString newBody;
    if (k >= 0) {
        const qsizetype cr = oldBody.indexOf(u'\r', k + marker.size());
        newBody = oldBody.left(k) + marker + value + u'\r' + (cr >= 0 ? oldBody.mid(cr + 1) : QString());
    } else {
        newBody = oldBody + key + u'=' + value + kCrLf;
    }
    // The body was cut from the first occurrence of the header, so this replaces exactly that one.
    const qsizetype headLen = 3 + section.size();
    text.replace(at + headLen, oldBody.size(), newBody);
}

bool ReadTextKeys(const QString& text, TextArray& names)
{
    names = NewTextArray();
    const auto lines = QStringView(text).split(kCrLf);
    for (QStringView line : lines) {
        if (line.isEmpty())
            continue;
        const QChar first = line.front();
        if (first == u';' || first == u':' || first == u'\'')
            continue;
        const qsizetype eq = line.indexOf(u'=');
        if (eq >= 0)
            AppendItem(names, line.left(eq).toString());
    }
    return true;
}

}  // namespace td
