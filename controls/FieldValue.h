#pragma once
#include <QString>
#include <QVariant>

namespace td {

// What a record editor writes into a field of the given ADO type: the numeric value of the text for
// numeric types, a boolean for booleans, the text itself for the rest.
QVariant FieldValueForType(const QString& text, int adoType);

// "True"/"False" in any case, or a number (not 0 is true); anything else is a type mismatch (AppError).
bool BooleanFromText(const QString& text);

}  // namespace td
