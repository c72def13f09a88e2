#include "controls/ControlsLog.h"

Q_LOGGING_CATEGORY(lcControls, "tunedesk.controls", QtInfoMsg)
