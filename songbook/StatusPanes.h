#pragma once
#include "shell/mdiMain.h"
#include <QString>

namespace td {

// Writes a pane of the frame's status bar; without a frame (a window on its own) nothing shows.
inline void SetPane(const QString& key, const QString& text)
{
    if (mdiMain* frame = MainFrame())
        frame->setPane(key, text);
}

inline void SetLogPane(const QString& text)
{
    SetPane(QStringLiteral("log"), text);
}

}  // namespace td
