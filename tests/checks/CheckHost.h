#pragma once
// The exchange tests' recording host, as the check and print jobs want it: a question without a scripted
// answer is answered Yes (the operator goes on), the cancel question No; messages() lists what was shown.
#include "exchange/ExchangeTestSupport.h"

namespace td::test {

class CheckHost : public RecordingHost {
public:
    MsgAnswer Ask(const QString& text, MsgButtons buttons, const QString& title = {}) override
    {
        if (!answers.empty())
            return RecordingHost::Ask(text, buttons, title);
        events << QStringLiteral("ask ") + text;
        return text.startsWith(QStringLiteral("Do you want to cancel")) ? MsgAnswer::No : MsgAnswer::Yes;
    }

    QStringList messages() const
    {
        return events.filter(QRegularExpression(QStringLiteral("^(info|fail) ")));
    }
};

}  // namespace td::test
