#pragma once
#include "shell/services/AppError.h"
#include "songdb/Recordset.h"
#include <QString>
#include <memory>

namespace td {

// Runs a step that may throw and keeps the error's description for the message that follows;
// a step that throws counts as a step that answered false.
class ErrorTrap {
public:
    template <typename Step>
    bool run(Step step)
    {
        try {
            return step();
        } catch (const std::exception& e) {
            description_ = ErrorText(e);
            return false;
        }
    }
    // " Err=" and the description, or nothing when no step threw.
    QString suffix() const { return ErrSuffix(description_); }

private:
    QString description_;
};

// Opens a recordset on the song database without a message of its own: the caller tells the
// operator in its own words. Throws AppError, also when no database is open.
std::unique_ptr<Recordset> OpenSongRecordset(const QString& sql);

// A write that failed half way leaves no edit pending on the recordset.
void CancelPendingEdit(Recordset* rs);

}  // namespace td
