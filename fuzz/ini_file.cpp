// INI files as the profile functions read and write them: the application INI, event.log, Region.ini.
#include "fuzz/FuzzSupport.h"
#include "fuzz/FuzzTargets.h"
#include "shell/services/Ini.h"

namespace td::fuzz {

int FuzzIniFile(const uint8_t* data, size_t size)
{
    const QString file = WriteFile(QStringLiteral("ini/app.ini"), Input(data, size));
    TextArray names;
    const int count = IniReadSection(file, QStringLiteral("Default"), names);
    Expect(count == UBound(names), "the count of names is the upper bound of the array");
    // Every name the section lists can be read; the first matching key wins, so only its length is known.
    for (int i = 1; i <= count && i <= 20; ++i)
        Expect(IniRead(file, QStringLiteral("Default"), names[i], {}).size() <= 254,
               "a value reads through a buffer of 255 characters");

    // A write is read back whatever the file held before, and the rest of the file keeps its values.
    const QString before = IniRead(file, QStringLiteral("Other"), QStringLiteral("Kept"), QStringLiteral("-"));
    Expect(IniWrite(file, QStringLiteral("Default"), QStringLiteral("Index"), QStringLiteral("042")),
           "a write to a writable file succeeds");
    Expect(IniRead(file, QStringLiteral("Default"), QStringLiteral("Index"), {}) == u"042",
           "a written value reads back");
    Expect(IniRead(file, QStringLiteral("Other"), QStringLiteral("Kept"), QStringLiteral("-")) == before,
           "a write leaves other sections alone");

    Expect(IniDeleteSection(file, QStringLiteral("Default")), "a section of a writable file can be deleted");
    Expect(IniRead(file, QStringLiteral("Other"), QStringLiteral("Kept"), QStringLiteral("-")) == before,
           "a deletion leaves other sections alone");
    return 0;
}

}  // namespace td::fuzz
