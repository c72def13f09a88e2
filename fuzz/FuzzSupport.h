#pragma once
// What every fuzz target shares: a program directory of its own, the input as a file, a job host that
// answers every question with yes, and the check that turns a broken promise into a finding.
#include "shell/services/ConsoleJobHost.h"
#include <QByteArray>
#include <QString>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace td {
class Connection;
}

namespace td::fuzz {

// The input as bytes.
QByteArray Input(const uint8_t* data, size_t size);

// A temporary program directory for this process, made on first use; AppPath() points at it.
QString WorkDir();
// Writes bytes to a file below WorkDir(), creating its folders; answers the full path.
QString WriteFile(const QString& relative, const QByteArray& bytes);
// Removes a folder below WorkDir() with everything in it, so each input starts from nothing.
void ClearFolder(const QString& relative);

// An empty song database below WorkDir(), made once and emptied of rows before each use.
Connection& SongDatabase();

// A promise of the code under test that the input broke: prints it and aborts, which the fuzzer
// reports as a finding with the input that did it.
void Expect(bool kept, const char* promise);

// Runs a job to its end: every question is answered yes, messages and failures are counted, not printed.
class YesJobHost : public ConsoleJobHost {
public:
    MsgAnswer Ask(const QString&, MsgButtons buttons, const QString& = {}) override;
    void Inform(const QString&, const QString& = {}) override { ++messages; }
    void Fail(const QString&, const QString& = {}) override { ++failures; }

    int messages = 0;
    int failures = 0;
};

}  // namespace td::fuzz
