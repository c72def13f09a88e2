// A region's text file damaged by hand or by a copy: the console still starts, shows English for what it
// cannot read and the translation for what it can, and never writes over the file.
#include "regions/WindowText.h"
#include "regions/frmDefaultRegion.h"
#include "shell/Main.h"
#include "shell/mdiMain.h"
#include "shell/services/Ini.h"
#include "shell/services/Translate.h"
#include "songdb/Schema.h"
#include "songdb/SongSession.h"
#include "support/QtApp.h"
#include "support/QtPrint.h"
#include "support/ScriptedDialogs.h"
#include "support/TempAppDir.h"
#include <QAction>
#include <QFile>
#include <functional>
#include <gtest/gtest.h>

using namespace td;

namespace {

QByteArray utf16(const QString& text)
{
    QByteArray bytes;
    for (QChar c : text)
        bytes.append(char(c.unicode() & 0xFF)).append(char(c.unicode() >> 8));
    return bytes;
}

const QString kLines = QStringLiteral(
    "\r\n[Resource]\r\nSave=保存\r\nPlay=播放\r\nDefault region for interface=界面默认区域\r\n");
const QByteArray kBom("\xFF\xFE", 2);

struct Damage {
    const char* name;
    std::function<QByteArray()> bytes;
    bool save, play, caption;  // which texts still show translated
};

const Damage kDamages[] = {
    {"intact", [] { return kBom + utf16(kLines); }, true, true, true},
    {"truncated in the last key",
     [] { return kBom + utf16(kLines.left(kLines.indexOf(QStringLiteral("region")))); }, true, true, false},
    {"truncated to one byte", [] { return QByteArray("\xFF", 1); }, false, false, false},
    {"empty", [] { return QByteArray(); }, false, false, false},
    {"UTF-16 without byte-order mark", [] { return utf16(kLines); }, false, false, false},
    {"UTF-8 without byte-order mark", [] { return kLines.toUtf8(); }, false, false, false},
    {"odd length, a stray byte at the end", [] { return kBom + utf16(kLines) + 'x'; }, true, true, true},
    {"odd length, a byte lost in the middle",
     [] {
         QByteArray b = kBom + utf16(kLines);
         return b.remove(2 + 2 * kLines.indexOf(QStringLiteral("Play")) + 1, 1);
     },
     true, false, false},
    {"a line without \"=\"",
     [] {
         QString lines = kLines;
         return kBom + utf16(lines.replace(QStringLiteral("Play="), QStringLiteral("Play ")));
     },
     true, false, true},
};

class DamagedTextFile : public ::testing::TestWithParam<Damage> {
protected:
    DamagedTextFile()
    {
        test::EnsureQtApp();
        file = dir.write(QStringLiteral("Region/Chinese(PRC)/string.txt"), GetParam().bytes());
        dir.write(QStringLiteral("Region/English/string.txt"),
                  kBom + utf16(QStringLiteral("\r\n[Resource]\r\nPlay=Play\r\n")));
        IniWrite(dir.file(QStringLiteral("Region.ini")), QStringLiteral("Home"), QStringLiteral("Default"),
                 QStringLiteral("Chinese(PRC)"));
        EXPECT_TRUE(dir.openSongDatabase());
        SongConnection()->execute(QStringLiteral("insert into region (name) values ('Chinese(PRC)')"));
    }
    ~DamagedTextFile() override { SongCloseDatabase(); }

    QByteArray onDisk() const
    {
        QFile f(file);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<gone>");
    }
    void expectTexts(const QString& caption) const
    {
        const Damage& d = GetParam();
        EXPECT_EQ(TranslateText(QStringLiteral("Save (&S)")),
                  d.save ? QStringLiteral("保存 (&S)") : QStringLiteral("Save"));
        EXPECT_EQ(TranslateText(QStringLiteral("Play")),
                  d.play ? QStringLiteral("播放") : QStringLiteral("Play"));
        EXPECT_EQ(caption, d.caption ? QStringLiteral("界面默认区域")
                                     : QStringLiteral("Default region for interface"));
    }

    test::TempAppDir dir;
    test::ScriptedDialogs dialogs;
    QString file;
};

TEST_P(DamagedTextFile, ConsoleStartsWithWhatItCanReadAndLeavesTheFile)
{
    const QByteArray before = onDisk();
    RegisterWindows();
    {
        mdiMain frame;
        QWidget* w = frame.ShowWindow(QStringLiteral("frmDefaultRegion"));
        ASSERT_NE(w, nullptr);
        expectTexts(w->windowTitle());
        // The same file chosen again while the window is open.
        SetRegionAndApply(QStringLiteral("English"));
        SetRegionAndApply(QStringLiteral("Chinese(PRC)"));
        expectTexts(w->windowTitle());
        frame.CloseChildren();
    }
    EXPECT_EQ(onDisk(), before);
}

INSTANTIATE_TEST_SUITE_P(Damages, DamagedTextFile, ::testing::ValuesIn(kDamages),
                         [](const ::testing::TestParamInfo<Damage>& info) {
                             std::string name;
                             for (const char* c = info.param.name; *c; ++c)
                                 if (std::isalnum(static_cast<unsigned char>(*c)))
                                     name += *c;
                             return name;
                         });

}  // namespace
