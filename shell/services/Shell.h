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

// Writes Internet.url with [InternetShortcut] URL=location into the current directory and opens it.
void OpenInternetShortcut(const QString& location);

}  // namespace td
