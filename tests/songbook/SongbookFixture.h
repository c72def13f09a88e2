#pragma once
#include "shell/services/Shell.h"
#include "support/FakeMixer.h"
#include "support/QtPrint.h"  // texts in failures
#include "support/ScriptedDialogs.h"
#include "support/TempAppDir.h"
#include <QStringList>
#include <functional>
#include <gtest/gtest.h>
#include <memory>

namespace td {
class frmSong;
class mdiMain;
}  // namespace td

namespace td::test {

// The shell's "play" verb, recorded with what the command file held at that moment.
class RecordingShell : public ShellSeam {
public:
    RecordingShell() { SetShell(this); }
    ~RecordingShell() override { SetShell(nullptr); }
    bool open(const QString&) override { return true; }
    bool play(const QString& commandFile) override;
    bool edit(const QString&) override { return true; }
    QStringList played;        // command files handed over
    QStringList commandLines;  // the lines of the last command file, as written
    bool playerStarts = true;  // false: as if no player program could be started
};

// A program folder with the songbook's format files, a song database with one library folder
// (lib/) and the region "China" on offer, and the frame with the songbook open in it.
class SongbookFixture : public ::testing::Test {
protected:
    SongbookFixture();
    ~SongbookFixture() override;

    // Adds a song through another path than the window; answers its id.
    qint64 addSong(const QString& title, const QString& singer = {},
                   const QString& region = QStringLiteral("China"), int index = 0, const QString& more = {});
    void sql(const QString& statement);
    QString value(const QString& sql);  // first field of the first row, as text
    QString libRoot() const { return dir.file(QStringLiteral("lib")); }
    QString makeFile(const QString& relative);  // a small file below the program folder

    // Opens the songbook window and fills its list.
    void openSongbook();
    // Runs the search as the button does and lets the events run until the list is full.
    bool loadList();
    // Lets the events run until a search under way has filled the list.
    bool waitForList();
    // Lets the events run until the values of a chosen search type are there.
    bool waitForValues();
    bool waitWhile(const std::function<bool()>& busy);
    // Selects exactly these rows (1-based) and shows them in the editor, as a click would.
    void select(const QList<int>& rows);
    int row(const QString& title) const;  // list row of a title, 0 when not listed
    QStringList listedTitles() const;
    void edit(const QString& field, const QString& value);
    QString logPane() const;

    TempAppDir dir;
    ScriptedDialogs dialogs;
    RecordingShell shell;
    FakeMixer mixer;  // the preview's volume never reaches the machine's card
    std::unique_ptr<mdiMain> frame;
    frmSong* song = nullptr;
};

}  // namespace td::test
