#include "songdb/StoreLog.h"

Q_LOGGING_CATEGORY(lcStore, "tunedesk.songdb", QtInfoMsg)
