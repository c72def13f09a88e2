#pragma once
#include <QLoggingCategory>

// What the services notice without telling the operator (a damaged text file taken as none).
// Each layer has its own category: tunedesk.services, tunedesk.songdb, tunedesk.controls,
// tunedesk.windows; QT_LOGGING_RULES="tunedesk.*.debug=true" shows everything.
Q_DECLARE_LOGGING_CATEGORY(lcServices)
