#pragma once
#include "tools/admin/AdminCommand.h"

namespace td::admin {

// The import wizards' defaults answer their questions: go on with so many rows, go on checking after a
// crash (an import then stops with nothing added, or leaves the crashed names out), and go on after a
// failed row or file. Each crash and each failure is a line on stderr.
class ImportToTheEnd : public RunToTheEndWithProgress {
public:
    MsgAnswer Ask(const QString& text, MsgButtons buttons, const QString& title = {}) override
    {
        if (!title.isEmpty() || text.startsWith(QStringLiteral("An error take place"))) {
            Fail(text.split(QStringLiteral("\r\n")).first());
            return buttons == MsgButtons::OkCancel ? MsgAnswer::Ok : MsgAnswer::No;
        }
        return RunToTheEndWithProgress::Ask(text, buttons, title);
    }
};

}  // namespace td::admin
