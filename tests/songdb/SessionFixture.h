#pragma once
#include "SongFile.h"
#include "shell/services/Ini.h"
#include "songdb/SongSession.h"
#include "support/ScriptedDialogs.h"
#include "support/TempAppDir.h"
#include <gtest/gtest.h>

namespace td::test {

// A program folder whose database_home.ini names a fresh song database, and scripted dialogs.
class SessionFixture : public ::testing::Test {
protected:
    explicit SessionFixture(const QString& language = QStringLiteral("English")) : file(language) {}
    void SetUp() override { pointAt(file.path()); }
    void TearDown() override { SongCloseDatabase(); }
    void pointAt(const QString& path)
    {
        QString local = path;
        DatabaseHomePath(QStringLiteral("SongServer"), local, true);
    }
    bool openSession()
    {
        const bool ok = SongOpenDatabase();
        dialogs.clear();
        return ok;
    }

    TempAppDir app;
    ScriptedDialogs dialogs;
    SongFile file;
};

}  // namespace td::test
