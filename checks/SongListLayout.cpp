#include "checks/SongListLayout.h"
#include "shell/services/AppError.h"
#include "shell/services/Ini.h"
#include <QDateTime>
#include <QLocale>

namespace td {

namespace {

double number(const QString& file, const QString& section, const QString& key, double def)
{
    const QString text = IniRead(file, section, key, QString()).trimmed();
    return text.isEmpty() ? def : NumericValue(text);
}

}  // namespace

SongListLayout ReadSongListLayout(const QString& file)
{
    SongListLayout l;
    const QString page = QStringLiteral("Page");
    l.paper = IniRead(file, page, QStringLiteral("Paper"), l.paper).trimmed();
    l.landscape = IniRead(file, page, QStringLiteral("Orientation"), QString()).trimmed().toLower() == u"landscape";
    l.marginLeft = number(file, page, QStringLiteral("MarginLeft"), l.marginLeft);
    l.marginRight = number(file, page, QStringLiteral("MarginRight"), l.marginRight);
    l.marginTop = number(file, page, QStringLiteral("MarginTop"), l.marginTop);
    l.marginBottom = number(file, page, QStringLiteral("MarginBottom"), l.marginBottom);
    l.header = IniRead(file, page, QStringLiteral("Header"), l.header);
    l.footer = IniRead(file, page, QStringLiteral("Footer"), l.footer);
    l.gridLines = IniRead(file, page, QStringLiteral("GridLines"), QStringLiteral("1")).trimmed() != u"0";
    const QString font = QStringLiteral("Font");
    l.fontName = IniRead(file, font, QStringLiteral("Name"), l.fontName).trimmed();
    l.fontSize = number(file, font, QStringLiteral("Size"), l.fontSize);
    if (l.fontSize < 4)
        l.fontSize = 4;
    l.headBold = IniRead(file, font, QStringLiteral("HeadBold"), QStringLiteral("1")).trimmed() != u"0";
    const QString columns = QStringLiteral("Columns");
    TextArray keys;
    const int n = IniReadSection(file, columns, keys);
    for (int i = 1; i <= n; ++i) {
        const double w = number(file, columns, keys[i], l.defaultWidth);
        if (keys[i].compare(QStringLiteral("Default"), Qt::CaseInsensitive) == 0)
            l.defaultWidth = w > 0 ? w : l.defaultWidth;
        else if (w > 0)
            l.widths.insert(keys[i].toLower(), w);
    }
    return l;
}

PageBand ExpandPageBand(const QString& codes, int page, int pages, const QString& sheet)
{
    PageBand band;
    QString* part = &band.centre;
    const QDateTime now = QDateTime::currentDateTime();
    for (qsizetype i = 0; i < codes.size(); ++i) {
        if (codes[i] != u'&' || i + 1 >= codes.size()) {
            *part += codes[i];
            continue;
        }
        const QChar code = codes[++i].toUpper();
        if (code == u'L')
            part = &band.left;
        else if (code == u'C')
            part = &band.centre;
        else if (code == u'R')
            part = &band.right;
        else if (code == u'P')
            *part += QString::number(page);
        else if (code == u'N')
            *part += QString::number(pages);
        else if (code == u'D')
            *part += now.toString(QStringLiteral("yyyy-MM-dd"));
        else if (code == u'T')
            *part += now.toString(QStringLiteral("HH:mm"));
        else if (code == u'A')
            *part += sheet;
        else if (code == u'&')
            *part += u'&';
        else if (code == u'"') {  // a font name: the pages keep the template's font
            const qsizetype end = codes.indexOf(u'"', i + 1);
            i = end < 0 ? codes.size() : end;
        } else if (code.isDigit()) {  // a font size
            while (i + 1 < codes.size() && codes[i + 1].isDigit())
                ++i;
        }
        // Other codes (bold, italic, underline ...) change only the look in the spreadsheet.
    }
    return band;
}

}  // namespace td
