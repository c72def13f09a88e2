#include "checks/SongListPages.h"
#include <QFontMetricsF>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>

namespace td {

namespace {

QPageSize::PageSizeId pageSizeOf(const QString& paper)
{
    static const QHash<QString, QPageSize::PageSizeId> sizes{
        {QStringLiteral("letter"), QPageSize::Letter}, {QStringLiteral("legal"), QPageSize::Legal},
        {QStringLiteral("a3"), QPageSize::A3},         {QStringLiteral("a4"), QPageSize::A4},
        {QStringLiteral("a5"), QPageSize::A5},         {QStringLiteral("b5"), QPageSize::B5}};
    return sizes.value(paper.toLower(), QPageSize::A4);
}

// Positions in device pixels of one page's parts.
struct PageGeometry {
    double width = 0, height = 0;  // the paint area
    double line = 0;               // height of a header, footer or table row
    double bodyTop = 0;            // first row below the header band
    int rowsPerPage = 1;           // table rows below the captions
    std::vector<double> columns;   // widths
};

PageGeometry measure(QPagedPaintDevice& device, const SongListLayout& layout, const QFont& font,
                     const QStringList& captions, const QStringList& fields)
{
    PageGeometry g;
    const QRectF area = device.pageLayout().paintRectPixels(device.logicalDpiX());
    g.width = area.width();
    g.height = area.height();
    const QFontMetricsF fm(font, &device);
    g.line = fm.height() * 1.4;
    g.bodyTop = layout.header.isEmpty() ? 0 : g.line * 1.5;
    const double bottom = g.height - (layout.footer.isEmpty() ? 0 : g.line * 1.5);
    g.rowsPerPage = std::max(1, int((bottom - g.bodyTop) / g.line) - 1);
    double total = 0;
    for (qsizetype c = 0; c < captions.size(); ++c) {
        const double w = (c < fields.size() ? layout.widthOf(fields[c]) : layout.defaultWidth) *
                         fm.horizontalAdvance(QStringLiteral("0"));
        g.columns.push_back(w);
        total += w;
    }
    if (total > g.width)
        for (double& w : g.columns)
            w *= g.width / total;
    return g;
}

void paintBand(QPainter& p, const PageBand& band, double top, double width, double height)
{
    const QRectF r(0, top, width, height);
    p.drawText(r, Qt::AlignLeft | Qt::AlignVCenter, band.left);
    p.drawText(r, Qt::AlignHCenter | Qt::AlignVCenter, band.centre);
    p.drawText(r, Qt::AlignRight | Qt::AlignVCenter, band.right);
}

void paintRow(QPainter& p, const PageGeometry& g, const SongListLayout& layout, const QStringList& cells,
              double top)
{
    const QFontMetricsF fm(p.font(), p.device());
    const double pad = fm.horizontalAdvance(u' ') / 2;
    double x = 0;
    for (std::size_t c = 0; c < g.columns.size(); ++c) {
        const QRectF cell(x, top, g.columns[c], g.line);
        const QString text = fm.elidedText(cells.value(qsizetype(c)), Qt::ElideRight, cell.width() - 2 * pad);
        p.drawText(cell.adjusted(pad, 0, -pad, 0), Qt::AlignLeft | Qt::AlignVCenter, text);
        if (layout.gridLines)
            p.drawRect(cell);
        x += g.columns[c];
    }
}

}  // namespace

void ApplyPageLayout(QPagedPaintDevice& device, const SongListLayout& layout)
{
    device.setPageLayout(QPageLayout(QPageSize(pageSizeOf(layout.paper)),
                                     layout.landscape ? QPageLayout::Landscape : QPageLayout::Portrait,
                                     QMarginsF(layout.marginLeft, layout.marginTop, layout.marginRight,
                                               layout.marginBottom),
                                     QPageLayout::Millimeter));
}

int PaintSongList(QPagedPaintDevice& device, const SongListLayout& layout, const QStringList& captions,
                  const QList<QStringList>& rows, const QStringList& fields)
{
    QPainter p;
    if (!p.begin(&device))
        return 0;
    QFont font(layout.fontName);
    font.setPointSizeF(layout.fontSize);
    QFont head = font;
    head.setBold(layout.headBold);
    p.setFont(font);
    const PageGeometry g = measure(device, layout, font, captions, fields);
    const int pages = std::max<int>(1, int((rows.size() + g.rowsPerPage - 1) / g.rowsPerPage));
    QPen pen(Qt::black);
    pen.setWidthF(std::max(1.0, device.logicalDpiX() / 150.0));
    p.setPen(pen);
    for (int page = 1; page <= pages; ++page) {
        if (page > 1)
            device.newPage();
        p.setFont(font);
        if (!layout.header.isEmpty())
            paintBand(p, ExpandPageBand(layout.header, page, pages, QStringLiteral("Sheet1")), 0, g.width, g.line);
        if (!layout.footer.isEmpty())
            paintBand(p, ExpandPageBand(layout.footer, page, pages, QStringLiteral("Sheet1")), g.height - g.line,
                      g.width, g.line);
        p.setFont(head);
        paintRow(p, g, layout, captions, g.bodyTop);
        p.setFont(font);
        const qsizetype first = qsizetype(page - 1) * g.rowsPerPage;
        const qsizetype last = std::min<qsizetype>(rows.size(), first + g.rowsPerPage);
        for (qsizetype r = first; r < last; ++r)
            paintRow(p, g, layout, rows[r], g.bodyTop + g.line * double(r - first + 1));
    }
    p.end();
    return pages;
}

bool WriteSongListPdf(const QString& path, const SongListLayout& layout, const QStringList& captions,
                      const QList<QStringList>& rows, const QStringList& fields)
{
    QPdfWriter pdf(path);
    pdf.setResolution(300);
    pdf.setTitle(QStringLiteral("Song list"));
    pdf.setCreator(QStringLiteral("Tunedesk"));
    ApplyPageLayout(pdf, layout);
    return PaintSongList(pdf, layout, captions, rows, fields) > 0;
}

}  // namespace td
