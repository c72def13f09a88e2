#pragma once
#include <QLoggingCategory>

// What the data-bound controls notice without telling the operator (a row that could not be shown,
// a format file that could not be written).
Q_DECLARE_LOGGING_CATEGORY(lcControls)
