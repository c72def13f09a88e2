#include "shell/WindowsLog.h"

Q_LOGGING_CATEGORY(lcWindows, "tunedesk.windows", QtInfoMsg)
