// command.spe beside the program: whatever an earlier hand-off or the player left in it, the next
// hand-off replaces section Default with the songs it sends.
#include "fuzz/FuzzSupport.h"
#include "fuzz/FuzzTargets.h"
#include "shell/services/Ini.h"

namespace td::fuzz {

int FuzzCommandSpe(const uint8_t* data, size_t size)
{
    const QString file = WriteFile(QStringLiteral("command.spe"), Input(data, size));
    const QString section = QStringLiteral("Default");
    const QStringList songs = {QStringLiteral("/net/ktv/KtvPublic/Pop/0001.dat"),
                               QStringLiteral("/srv/Songs/Ballads/0002.mpg")};
    Expect(IniDeleteSection(file, section), "the old songs can be removed");
    for (qsizetype i = 0; i < songs.size(); ++i)
        Expect(IniWrite(file, section, songs[i], i == 0 ? QStringLiteral("p") : QStringLiteral("a")),
               "each song can be written");
    Expect(IniRead(file, section, songs[0], {}) == u"p" && IniRead(file, section, songs[1], {}) == u"a",
           "the player finds each song with its mode");
    return 0;
}

}  // namespace td::fuzz
