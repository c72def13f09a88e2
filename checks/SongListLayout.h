#pragma once
#include <QHash>
#include <QString>

namespace td {

// How the printed song list looks, read from the template beside the program (PrintTemplate.ini, see
// docs/printing.md): it serves the workbook and the printed pages alike.
struct SongListLayout {
    QString paper = QStringLiteral("A4");  // A3, A4, A5, B5, Letter, Legal
    bool landscape = false;
    double marginLeft = 15, marginRight = 15, marginTop = 20, marginBottom = 20;  // millimetres
    // Header and footer in the spreadsheet's codes: &L, &C, &R start the left, centre and right part;
    // &P is the page, &N the number of pages, &D the date, &T the time, &A the sheet, && an ampersand.
    QString header;
    QString footer = QStringLiteral("&CPage &P of &N");
    QString fontName = QStringLiteral("WenQuanYi Micro Hei");
    double fontSize = 10;
    bool headBold = true;
    bool gridLines = true;
    double defaultWidth = 12;     // column width in characters
    QHash<QString, double> widths;  // by field name, lower case
    double widthOf(const QString& field) const { return widths.value(field.toLower(), defaultWidth); }
};

// The template's layout; keys it lacks keep their defaults, a missing file gives the defaults.
SongListLayout ReadSongListLayout(const QString& templateFile);

// One part of a header or footer: its left, centre and right texts for a page.
struct PageBand {
    QString left, centre, right;
};
PageBand ExpandPageBand(const QString& codes, int page, int pages, const QString& sheet);

}  // namespace td
