#include "booklet/BookletPages.h"
#include "shell/services/Translate.h"
#include <QFontMetricsF>
#include <QLocale>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>

namespace td {

namespace {

constexpr double kMarginMm = 12;
constexpr double kGutterMm = 5;
constexpr int kHeadingLines = 2;  // a blank line above the heading, then the heading

struct Fonts {
    QFont body, heading, continued, venue;
};

Fonts fontsOf(const BookletOptions& o)
{
    Fonts f;
    f.body = QFont(o.fontName);
    f.body.setPointSizeF(o.fontSize);
    f.heading = f.body;
    f.heading.setBold(true);
    f.continued = f.heading;
    f.continued.setItalic(true);
    f.venue = f.heading;
    f.venue.setPointSizeF(o.fontSize * 1.4);
    return f;
}

// Positions in device pixels of a page's parts.
struct Geometry {
    QRectF page;      // the paint area
    double line = 0;  // height of a song line
    double band = 0;  // height of the header and of the footer band
    QRectF body;      // where the columns go
    double gutter = 0;
    double columnWidth = 0;
    BookletFrame frame;
};

Geometry measure(QPagedPaintDevice& device, const BookletOptions& o, const Fonts& fonts)
{
    Geometry g;
    const QRectF area = device.pageLayout().paintRectPixels(device.logicalDpiX());
    g.page = QRectF(0, 0, area.width(), area.height());
    g.line = QFontMetricsF(fonts.body, &device).height() * 1.2;
    g.band = QFontMetricsF(fonts.venue, &device).height() * 1.5;
    g.body = g.page.adjusted(0, g.band + g.line / 2, 0, -(g.band + g.line / 2));
    const int columns = std::clamp(o.columns, 1, 4);
    g.gutter = kGutterMm / 25.4 * device.logicalDpiX();
    g.columnWidth = (g.body.width() - g.gutter * (columns - 1)) / columns;
    g.frame = {columns, std::max(kHeadingLines + 1, int(g.body.height() / g.line)), kHeadingLines};
    return g;
}

QString songNumber(const BookletSong& song)
{
    return QString::number(song.index);
}

double numberWidth(const QList<BookletSection>& sections, const QFontMetricsF& fm)
{
    qint64 widest = 0;
    for (const BookletSection& s : sections)
        for (const BookletSong& song : s.songs)
            widest = std::max(widest, song.index);
    return fm.horizontalAdvance(QString(QString::number(widest).size(), u'0')) + fm.horizontalAdvance(u' ');
}

class Painter {
public:
    Painter(QPainter& p, const BookletOptions& o, const Fonts& fonts, const Geometry& g,
            const QList<BookletSection>& sections)
        : p_(p),
          o_(o),
          fonts_(fonts),
          g_(g),
          sections_(sections),
          body_(fonts.body, p.device()),
          pad_(body_.horizontalAdvance(u' ') / 2),
          number_(numberWidth(sections, body_))
    {
    }

    void page(const BookletPage& page, int number, int pages)
    {
        bands(number, pages);
        for (qsizetype c = 0; c < page.columns.size(); ++c) {
            const double x = g_.body.left() + double(c) * (g_.columnWidth + g_.gutter);
            double y = g_.body.top();
            for (const BookletLine& line : page.columns[c]) {
                if (line.kind == BookletLine::Song) {
                    song(sections_[line.section].songs[line.song], QRectF(x, y, g_.columnWidth, g_.line));
                    y += g_.line;
                } else {
                    heading(line, QRectF(x, y + g_.line * (kHeadingLines - 1), g_.columnWidth, g_.line));
                    y += g_.line * kHeadingLines;
                }
            }
        }
    }

private:
    void bands(int number, int pages)
    {
        const QRectF top(g_.page.left(), g_.page.top(), g_.page.width(), g_.band);
        p_.setPen(Qt::black);
        p_.setFont(fonts_.venue);
        p_.drawText(top, Qt::AlignLeft | Qt::AlignVCenter, o_.venue);
        p_.setFont(fonts_.body);
        p_.drawText(top, Qt::AlignRight | Qt::AlignVCenter,
                    QLocale::c().toString(o_.date, QStringLiteral("yyyy-MM-dd")));
        p_.drawLine(top.bottomLeft(), top.bottomRight());
        const QRectF foot(g_.page.left(), g_.page.bottom() - g_.band, g_.page.width(), g_.band);
        p_.drawLine(foot.topLeft(), foot.topRight());
        p_.drawText(foot, Qt::AlignHCenter | Qt::AlignVCenter,
                    QStringLiteral("%1 / %2").arg(number).arg(pages));
    }

    void heading(const BookletLine& line, const QRectF& r)
    {
        const BookletSection& s = sections_[line.section];
        p_.fillRect(r, QColor(0xE4, 0xE4, 0xE4));
        QString text = BookletHeading(s, o_.group);
        if (line.kind == BookletLine::Continued)
            text += u' ' + TranslateText(QStringLiteral("(continued)"));
        const QFont& font = line.kind == BookletLine::Continued ? fonts_.continued : fonts_.heading;
        p_.setFont(font);
        p_.setPen(Qt::black);
        const QFontMetricsF fm(font, p_.device());
        const double pad = fm.horizontalAdvance(u' ') / 2;
        p_.drawText(r.adjusted(pad, 0, -pad, 0), Qt::AlignLeft | Qt::AlignVCenter,
                    fm.elidedText(text, Qt::ElideRight, r.width() - 2 * pad));
    }

    void song(const BookletSong& s, const QRectF& r)
    {
        p_.setFont(fonts_.body);
        const QFontMetricsF& fm = body_;
        const double pad = pad_;
        p_.setPen(Qt::black);
        p_.drawText(QRectF(r.left(), r.top(), number_ - pad, r.height()), Qt::AlignRight | Qt::AlignVCenter,
                    songNumber(s));
        QRectF title(r.left() + number_ + pad, r.top(), r.width() - number_ - 2 * pad, r.height());
        if (o_.group != BookletGroup::Singer && !s.singer.isEmpty()) {
            // The singer on the right, in grey, taking at most a third of the column.
            const QString singer = fm.elidedText(s.singer, Qt::ElideRight, title.width() / 3);
            const double width = fm.horizontalAdvance(singer);
            p_.setPen(QColor(0x55, 0x55, 0x55));
            p_.drawText(title, Qt::AlignRight | Qt::AlignVCenter, singer);
            p_.setPen(Qt::black);
            title.setWidth(title.width() - width - 2 * pad);
        }
        p_.drawText(title, Qt::AlignLeft | Qt::AlignVCenter,
                    fm.elidedText(s.title, Qt::ElideRight, title.width()));
    }

    QPainter& p_;
    const BookletOptions& o_;
    const Fonts& fonts_;
    const Geometry& g_;
    const QList<BookletSection>& sections_;
    const QFontMetricsF body_;  // measured once: songs are most of what is drawn
    const double pad_;
    const double number_;
};

}  // namespace

QString BookletGroupName(BookletGroup group)
{
    switch (group) {
        case BookletGroup::Singer:
            return QStringLiteral("singer");
        case BookletGroup::Length:
            return QStringLiteral("length");
        case BookletGroup::Language:
            return QStringLiteral("language");
    }
    return {};
}

bool BookletGroupFromName(const QString& name, BookletGroup& group)
{
    for (BookletGroup g : {BookletGroup::Singer, BookletGroup::Length, BookletGroup::Language})
        if (name.compare(BookletGroupName(g), Qt::CaseInsensitive) == 0) {
            group = g;
            return true;
        }
    return false;
}

void ApplyBookletPage(QPagedPaintDevice& device, const QString& paper)
{
    const bool letter = paper.compare(QStringLiteral("Letter"), Qt::CaseInsensitive) == 0;
    device.setPageLayout(
        QPageLayout(QPageSize(letter ? QPageSize::Letter : QPageSize::A4), QPageLayout::Portrait,
                    QMarginsF(kMarginMm, kMarginMm, kMarginMm, kMarginMm), QPageLayout::Millimeter));
}

QString BookletHeading(const BookletSection& section, BookletGroup group)
{
    switch (group) {
        case BookletGroup::Singer:
            return section.name.isEmpty() ? TranslateText(QStringLiteral("Unknown singer")) : section.name;
        case BookletGroup::Language:
            return section.name.isEmpty() ? TranslateText(QStringLiteral("Other languages")) : section.name;
        case BookletGroup::Length:
            return QString::number(section.chars) + u' ' +
                   TranslateText(section.chars == 1 ? QStringLiteral("character")
                                                    : QStringLiteral("characters"));
    }
    return section.name;
}

BookletFrame MeasureBooklet(QPagedPaintDevice& device, const BookletOptions& options)
{
    return measure(device, options, fontsOf(options)).frame;
}

int PaintBooklet(QPagedPaintDevice& device, const BookletOptions& options,
                 const QList<BookletSection>& sections, const BookletProgress& progress)
{
    const Fonts fonts = fontsOf(options);
    const Geometry g = measure(device, options, fonts);
    const QList<BookletPage> pages = LayOutBooklet(sections, g.frame);
    QPainter p;
    if (!p.begin(&device))
        return 0;
    Painter painter(p, options, fonts, g, sections);
    int drawn = 0;
    for (const BookletPage& page : pages) {
        if (drawn > 0)
            device.newPage();
        painter.page(page, ++drawn, int(pages.size()));
        if (progress && !progress(drawn, int(pages.size())))
            break;
    }
    p.end();
    return drawn;
}

bool WriteBookletPdf(const QString& path, const BookletOptions& options,
                     const QList<BookletSection>& sections, const BookletProgress& progress)
{
    QPdfWriter pdf(path);
    pdf.setResolution(300);
    pdf.setTitle(options.venue.isEmpty() ? QStringLiteral("Song booklet") : options.venue);
    pdf.setCreator(QStringLiteral("Tunedesk"));
    ApplyBookletPage(pdf, options.paper);
    bool whole = true;
    const int drawn = PaintBooklet(pdf, options, sections, [&](int page, int pages) {
        whole = !progress || progress(page, pages);
        return whole;
    });
    return drawn > 0 && whole;
}

}  // namespace td
