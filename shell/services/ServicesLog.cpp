#include "shell/services/ServicesLog.h"

Q_LOGGING_CATEGORY(lcServices, "tunedesk.services", QtInfoMsg)
