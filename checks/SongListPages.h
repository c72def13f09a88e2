#pragma once
#include "checks/SongListLayout.h"
#include <QList>
#include <QStringList>

class QPagedPaintDevice;

namespace td {

// Sets the template's paper, orientation and margins on a printer or PDF writer.
void ApplyPageLayout(QPagedPaintDevice& device, const SongListLayout& layout);

// Paints the song list on a printer or PDF writer whose page layout is set (fields name the columns for
// their widths): the captions at the top of
// every page, the rows below in the template's font, the columns in the template's proportions, made
// narrower together when they would not fit the page's width (a text too long for its cell ends in
// "…"), the template's header and footer on every page. Answers the number of pages.
int PaintSongList(QPagedPaintDevice& device, const SongListLayout& layout, const QStringList& captions,
                  const QList<QStringList>& rows, const QStringList& fields);

// The song list as a PDF file; false when the file cannot be written.
bool WriteSongListPdf(const QString& path, const SongListLayout& layout, const QStringList& captions,
                      const QList<QStringList>& rows, const QStringList& fields);

}  // namespace td
