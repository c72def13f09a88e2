#pragma once
#include "booklet/BookletLayout.h"
#include <QDate>
#include <QString>
#include <functional>

class QPagedPaintDevice;

namespace td {

// What the operator chooses for a booklet; the window keeps it in the application INI.
struct BookletOptions {
    BookletGroup group = BookletGroup::Singer;
    int columns = 3;                                           // 2 to 4
    QString paper = QStringLiteral("A4");                      // A4 or Letter
    QString region;                                            // empty: the songs of the available regions
    QString venue;                                             // in the header of every page
    QDate date = QDate::currentDate();                         // likewise
    QString fontName = QStringLiteral("WenQuanYi Micro Hei");  // a font with every hanzi
    double fontSize = 9;                                       // points
};

// "singer", "length", "language" and back; an unknown name answers false.
QString BookletGroupName(BookletGroup group);
bool BookletGroupFromName(const QString& name, BookletGroup& group);

// The paper (A4 unless Letter) in portrait, with the booklet's margins.
void ApplyBookletPage(QPagedPaintDevice& device, const QString& paper);

// The heading a group is printed under, in the interface language.
QString BookletHeading(const BookletSection& section, BookletGroup group);

// Called after each page with the page and the number of pages; false stops the drawing.
using BookletProgress = std::function<bool(int page, int pages)>;

// Draws the booklet on a printer or PDF writer whose page is set: the venue and the date at the top of
// every page, the page number at the foot, the groups in columns as LayOutBooklet places them, each
// song with its index number. Answers the number of pages drawn.
int PaintBooklet(QPagedPaintDevice& device, const BookletOptions& options,
                 const QList<BookletSection>& sections, const BookletProgress& progress = {});

// Where the lines go on this device: the frame the page leaves for the columns.
BookletFrame MeasureBooklet(QPagedPaintDevice& device, const BookletOptions& options);

// The booklet as a PDF file; false when it cannot be written or the drawing was stopped.
bool WriteBookletPdf(const QString& path, const BookletOptions& options,
                     const QList<BookletSection>& sections, const BookletProgress& progress = {});

}  // namespace td
