#include "controls/WindowFrame.h"

namespace td {

WindowFrame& NoFrame()
{
    static OwnerFrame frame;
    return frame;
}

}  // namespace td
