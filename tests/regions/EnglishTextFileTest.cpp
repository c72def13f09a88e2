#include "config/frmDatabase.h"
#include "config/frmSystemConfig.h"
#include "shell/AboutBox.h"
#include "shell/Main.h"
#include "shell/mdiMain.h"
#include "shell/services/TextStore.h"
#include "shell/services/Translate.h"
#include "songdb/Schema.h"
#include "songdb/SongSession.h"
#include "songdb/SongStatements.h"
#include "support/QtApp.h"
#include "support/ScriptedDialogs.h"
#include "support/TempAppDir.h"
#include <QAction>
#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <functional>
#include <gtest/gtest.h>

using namespace td;

namespace {

const QString kSourceDir = QStringLiteral(TUNEDESK_SOURCE_DIR);

// The regions shipped in data/Region: the folders with a string.txt.
QList<QString> shippedRegions()
{
    QList<QString> regions;
    const QDir root(kSourceDir + QStringLiteral("/data/Region"));
    for (const QString& name : root.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name))
        if (QFile::exists(root.filePath(name + QStringLiteral("/string.txt"))))
            regions << name;
    return regions;
}

// Texts the code hands to TranslateText as literals.
QSet<QString> literalKeys()
{
    static const QRegularExpression call(QStringLiteral(
        R"re(TranslateText\(\s*(?:QStringLiteral|QString::fromUtf8|QString::fromLatin1)\(\s*"((?:[^"\\]|\\.)*)"\s*\))re"));
    QSet<QString> keys;
    for (const char* dir : {"shell", "songdb", "controls", "songbook", "singers", "libraries", "exchange",
                            "checks", "config", "regions"}) {
        QDirIterator it(kSourceDir + u'/' + QString::fromLatin1(dir), {QStringLiteral("*.cpp")}, QDir::Files,
                        QDirIterator::Subdirectories);
        while (it.hasNext()) {
            QFile f(it.next());
            if (!f.open(QIODevice::ReadOnly))
                continue;
            const QString code = QString::fromUtf8(f.readAll());
            for (const auto& m : call.globalMatch(code))
                keys.insert(TranslationKey(m.captured(1)));
        }
    }
    return keys;
}

// Texts the windows look up while they load: captions, tips, format-file texts, the region names
// the region windows show, and the messages of menu entries that only say something.
QSet<QString> windowKeys()
{
    QSet<QString> keys;
    SetTranslateObserver([&keys](const QString& key) { keys.insert(key); });
    {
        mdiMain frame;
        frmDatabase database;
        frmSystemConfig system;
        AboutBox about;
        // The songbook reads its format files and lists its search types from an open database.
        RegisterWindows();
        for (const char* window : {"frmSong", "frmAvailableRegion", "frmGlobeRegion", "frmDefaultRegion",
                                   "frmOptions", "frmLibMana", "frmSinger", "frmCopyDisc"})
            frame.ShowWindow(QString::fromLatin1(window));
        for (const char* entry : {"mnuLogin", "mnuChangePassword"})
            frame.menuAction(QString::fromLatin1(entry))->trigger();
        QCoreApplication::processEvents();
    }
    SetTranslateObserver(nullptr);
    return keys;
}

// Every text the console hands to the translation, once for all the region files.
const QSet<QString>& consoleKeys()
{
    static const QSet<QString> keys = [] {
        test::EnsureQtApp();
        test::TempAppDir dir;
        test::ScriptedDialogs dialogs;
        const QDir data(kSourceDir + QStringLiteral("/data"));
        for (const QString& name : data.entryList({QStringLiteral("*.ini")}))
            QFile::copy(data.filePath(name), dir.file(name));
        // The region windows show the names of the installed regions through the translation.
        for (const QString& region : shippedRegions())
            dir.write(QStringLiteral("Region/") + region + QStringLiteral("/string.txt"), "\xFF\xFE");
        QString songs = dir.file(QStringLiteral("song.db"));
        CreateSongDatabase(songs, QStringLiteral("Chinese"));
        DatabaseHomePath(QStringLiteral("SongServer"), songs, true);
        if (!SongOpenDatabase())
            ADD_FAILURE() << "the test database did not open";
        SongExecute(QStringLiteral("insert into region (name) values ('English')"));
        QSet<QString> wanted = literalKeys() + windowKeys();
        wanted.remove(QString());
        SongCloseDatabase();
        return wanted;
    }();
    return keys;
}

class ShippedTextFile : public ::testing::TestWithParam<QString> {};

TEST_P(ShippedTextFile, HoldsEveryTextOfTheConsole)
{
    const QString region = GetParam();
    const QString file =
        kSourceDir + QStringLiteral("/data/Region/") + region + QStringLiteral("/string.txt");
    QString text;
    try {
        text = ReadTextStore(file);
    } catch (const std::exception&) {
    }
    // A line with nothing after "=" shows the English text, so it counts as missing.
    QStringList missing;
    for (const QString& key : consoleKeys())
        if (!key.contains(u'\r') && !key.contains(u'\n') &&
            ReadTextValue(text, QStringLiteral("Resource"), key, QString()).isEmpty())
            missing << key;
    missing.sort(Qt::CaseInsensitive);
    if (!missing.isEmpty()) {
        // A complete file to start from, beside the build: the present lines and the missing ones.
        QString proposed = text.isEmpty() ? QStringLiteral("\r\n[Resource]\r\n") : text;
        for (const QString& key : missing)
            WriteTextValue(proposed, QStringLiteral("Resource"), key, key);
        WriteTextStore(
            QStringLiteral(TUNEDESK_BINARY_DIR "/") + region + QStringLiteral(".string.txt.proposed"),
            proposed);
    }
    EXPECT_TRUE(missing.isEmpty()) << missing.size() << " texts lack a line in " << file.toStdString()
                                   << ":\n  " << missing.join(QStringLiteral("\n  ")).toStdString();
}

INSTANTIATE_TEST_SUITE_P(Regions, ShippedTextFile, ::testing::ValuesIn(shippedRegions()),
                         [](const ::testing::TestParamInfo<QString>& info) {
                             QString name = info.param;
                             name.remove(QRegularExpression(QStringLiteral("[^A-Za-z0-9]")));
                             return name.toStdString();
                         });

TEST(ShippedRegions, AreTheOnesTheConsoleOffers)
{
    EXPECT_EQ(shippedRegions(),
              (QList<QString>{QStringLiteral("Chinese(PRC)"), QStringLiteral("Chinese(Taiwan)"),
                              QStringLiteral("English")}));
}

}  // namespace
