#pragma once
#include <optional>
#include "support/ScriptedDialogs.h"
#include "support/TempAppDir.h"
#include <QList>
#include <QString>
#include <functional>
#include <gtest/gtest.h>
#include <memory>

namespace td {
class frmLibMana;
}

namespace td::test {

// A program folder with the library manager's format file, a song database with the libraries
// lib/a, lib/a2 (whose root starts like a's) and lib/b, and the window open on them.
class LibManaFixture : public ::testing::Test {
protected:
    LibManaFixture();
    ~LibManaFixture() override;

    QString root(const char* name) const
    {
        return dir.file(QStringLiteral("lib/") + QString::fromLatin1(name));
    }
    void sql(const QString& statement);
    QString value(const QString& statement);  // first field of the first row, as text
    int count(const QString& where);          // songs matching a condition
    // Adds songs of a library whose media files lie in its root as NNNN.dat; files=false leaves them out.
    void addSongs(const QString& library, int n, bool files = true);

    void openWindow();
    bool waitUntil(const std::function<bool()>& done, int ms = 10000);
    // Saves the edited library and waits for the save to end; nullopt when it never ends.
    std::optional<bool> saveAndWait();
    // Selects exactly the row of that root and shows it in the editor.
    void selectRoot(const QString& rootPath);
    void edit(const QString& field, const QString& value);
    QStringList listedRoots() const;

    TempAppDir dir;
    ScriptedDialogs dialogs;
    std::unique_ptr<frmLibMana> window;
};

}  // namespace td::test
