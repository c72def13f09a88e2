#include "config/frmDatabase.h"
#include "shell/AboutBox.h"
#include "shell/Main.h"
#include "shell/mdiMain.h"
#include "shell/services/TextStore.h"
#include "shell/services/Translate.h"
#include "songdb/Schema.h"
#include "songdb/SongSession.h"
#include "support/QtApp.h"
#include "support/ScriptedDialogs.h"
#include "support/TempAppDir.h"
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

// Texts the windows look up while they load: captions, tips, format-file texts.
QSet<QString> windowKeys()
{
    QSet<QString> keys;
    SetTranslateObserver([&keys](const QString& key) { keys.insert(key); });
    {
        mdiMain frame;
        frmDatabase database;
        AboutBox about;
        // The songbook reads its format files and lists its search types from an open database.
        RegisterWindows();
        frame.ShowWindow(QStringLiteral("frmSong"));
        QCoreApplication::processEvents();
    }
    SetTranslateObserver(nullptr);
    return keys;
}

TEST(EnglishTextFile, HoldsEveryTextOfTheConsole)
{
    test::EnsureQtApp();
    test::TempAppDir dir;
    test::ScriptedDialogs dialogs;
    for (const QString& name :
         QDir(kSourceDir + QStringLiteral("/data")).entryList({QStringLiteral("*.ini")}))
        QFile::copy(kSourceDir + QStringLiteral("/data/") + name, dir.file(name));
    QString songs = dir.file(QStringLiteral("song.db"));
    CreateSongDatabase(songs, QStringLiteral("Chinese"));
    DatabaseHomePath(QStringLiteral("SongServer"), songs, true);
    ASSERT_TRUE(SongOpenDatabase());
    QSet<QString> wanted = literalKeys() + windowKeys();
    wanted.remove(QString());

    const QString file = kSourceDir + QStringLiteral("/data/Region/English/string.txt");
    QString text;
    try {
        text = ReadTextStore(file);
    } catch (const std::exception&) {
    }
    QStringList missing;
    for (const QString& key : wanted)
        if (!key.contains(u'\r') && !key.contains(u'\n') &&
            ReadTextValue(text, QStringLiteral("Resource"), key, QStringLiteral("\x01")) ==
                QStringLiteral("\x01"))
            missing << key;
    missing.sort(Qt::CaseInsensitive);
    if (!missing.isEmpty()) {
        // A complete file to start from, beside the build: the present lines and the missing ones.
        QString proposed = text.isEmpty() ? QStringLiteral("\r\n[Resource]\r\n") : text;
        for (const QString& key : missing)
            WriteTextValue(proposed, QStringLiteral("Resource"), key, key);
        WriteTextStore(QStringLiteral(TUNEDESK_BINARY_DIR) + QStringLiteral("/string.txt.proposed"),
                       proposed);
    }
    SongCloseDatabase();
    EXPECT_TRUE(missing.isEmpty()) << missing.size() << " texts lack a line in " << file.toStdString()
                                   << ":\n  " << missing.join(QStringLiteral("\n  ")).toStdString();
}

}  // namespace
