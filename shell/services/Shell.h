#pragma once
#include <QString>

namespace td {

// What the desktop does for the program: open a file with its associated program, hand a command
// file to the room player, show a text file in the editor. Tests replace it.
class ShellSeam {
public:
    virtual ~ShellSeam() = default;
    virtual bool open(const QString& path) = 0;         // associated program
    virtual bool play(const QString& commandFile) = 0;  // application INI PlayerCommand, default xdg-open
    virtual bool edit(const QString& textFile) = 0;     // application INI EditorCommand, default xdg-open
};

ShellSeam& Shell();
void SetShell(ShellSeam* seam);

// Writes Internet.url with [InternetShortcut] URL=location into the current directory and opens it;
// false, after saying so, when no program could be started for it.
bool OpenInternetShortcut(const QString& location);

// The message of a hand-off to the desktop that could not start a program for the file.
void SayNoProgramStarted(const QString& file);

}  // namespace td
