#pragma once
#include "controls/WindowFrame.h"
#include "shell/services/Shell.h"
#include "support/ScriptedDialogs.h"
#include "support/TempAppDir.h"
#include <QStringList>
#include <gtest/gtest.h>

namespace td::test {

// The frame as a region window sees it: whether the songbook's menu shows, and the commands handed on.
class RegionFrame : public OwnerFrame {
public:
    bool menuVisible(const QString& menuName) const override
    {
        return songbookOpen && menuName == u"mnuSong";
    }
    void windowCommand(const QString& window, const QString& keyword) override
    {
        commands << window + u' ' + keyword;
    }
    void windowClosed() override { ++closed; }
    bool songbookOpen = false;
    QStringList commands;
    int closed = 0;
};

// The text editor the localiser gets.
class EditingShell : public ShellSeam {
public:
    EditingShell() { SetShell(this); }
    ~EditingShell() override { SetShell(nullptr); }
    bool open(const QString&) override { return true; }
    bool play(const QString&) override { return true; }
    bool edit(const QString& textFile) override
    {
        edited << textFile;
        return true;
    }
    QStringList edited;
};

// A program folder with installed regions and an open song database.
class RegionFixture : public ::testing::Test {
protected:
    RegionFixture();
    ~RegionFixture() override;

    // Installs a region: a folder under Region/ with a string.txt holding these lines of Resource.
    void install(const QString& region, const QString& lines = {});
    void sql(const QString& statement);
    // The first field of every row, in order.
    QStringList column(const QString& statement);

    TempAppDir dir;
    ScriptedDialogs dialogs;
    EditingShell shell;
    RegionFrame frame;
};

}  // namespace td::test
