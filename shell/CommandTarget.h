#pragma once
#include <QString>

namespace td {

// What the frame asks of its working windows: the songbook and the singer window take command
// keywords; the songbook also plays songs. A keyword a window does not know does nothing.
class CommandTarget {
public:
    virtual ~CommandTarget() = default;
    virtual void ExecuteCommand(const QString& keyword) = 0;
    virtual void PlaySong(const QString& /*source*/, const QString& /*action*/) {}
};

}  // namespace td
