// Songs and singers deleted from a songbook, brought back from its delete journal.
#include "songdb/Connection.h"
#include "songdb/DeleteJournal.h"
#include "tools/admin/AdminCommand.h"
#include <cstdio>

namespace td::admin {
namespace {

// Restores what was deleted from DB (since TIME, local time "yyyy-MM-dd[ HH:mm[:ss]]"). A song whose
// index another song has now, or a singer whose name is taken, stays in the journal: one line each on
// stderr, and exit 2 at the end.
int restore(QStringList args)
{
    const QString sinceText = option(args, QStringLiteral("--since"), QString());
    expectArgs(args, 1, 1);
    QDateTime since;
    if (!sinceText.isEmpty()) {
        since = ParseJournalTime(sinceText);
        if (!since.isValid())
            throw Failure{QStringLiteral("--since needs a time such as 2026-11-24 18:30, not ") + sinceText};
    }
    auto db = openExisting(args[0]);
    const RestoreOutcome outcome = RestoreDeleted(*db, since);
    for (const QString& line : outcome.refused)
        std::fprintf(stderr, "tunedesk-admin: %s\n", line.toLocal8Bit().constData());
    print(QStringLiteral("%1 song(s) and %2 singer(s) restored, %3 refused")
              .arg(outcome.songs)
              .arg(outcome.singers)
              .arg(outcome.refused.size()));
    return outcome.refused.isEmpty() ? 0 : kUsageError;
}

const CommandRegistration restoreCommand("restore", "restore DB [--since TIME]", restore);

}  // namespace
}  // namespace td::admin
