#pragma once
#include <QLoggingCategory>

// What the frame and the working windows notice without telling the operator.
Q_DECLARE_LOGGING_CATEGORY(lcWindows)
