// The format files List*.ini that lay out every list, record editor and button bar; a venue edits them.
#include "controls/ButtonFormat.h"
#include "controls/FieldFormat.h"
#include "controls/ViewFormat.h"
#include "fuzz/FuzzSupport.h"
#include "fuzz/FuzzTargets.h"

namespace td::fuzz {

int FuzzFormatFile(const uint8_t* data, size_t size)
{
    const QString file = WriteFile(QStringLiteral("ListSong.ini"), Input(data, size));
    const ViewFormat view = ReadViewFormat(file);
    ReadFieldFormat(file);
    ReadButtonFormat(file);

    // The layout a user leaves behind is written over the file and read again.
    std::vector<ColumnLayout> layout;
    for (const ViewColumn& col : view.Columns)
        layout.push_back({col.Key, col.Position, double(col.Width)});
    WriteViewLayout(file, layout);
    ReadViewFormat(file);
    return 0;
}

}  // namespace td::fuzz
