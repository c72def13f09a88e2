#pragma once
#include <QLoggingCategory>

// What the song database layer notices without telling the operator: cancelled reads, failures
// that a caller answers with its own message. QT_LOGGING_RULES="tunedesk.songdb.debug=true" shows all.
Q_DECLARE_LOGGING_CATEGORY(lcStore)
