// The vocal channel of the songs, found from their media files.
#include "shell/services/AppError.h"
#include "songbook/DetectChannels.h"
#include "songdb/Connection.h"
#include "tools/admin/AdminCommand.h"

namespace td::admin {
namespace {

// Fills in the field channel of the songs of FILE whose vocal channel the analysis finds for sure:
// the empty ones (--empty-only, the default) or all of them (--all). The undecided songs go to the
// report VocalChannel.log beside the program; a summary line goes to stdout.
int channels(QStringList args)
{
    const bool all = flag(args, QStringLiteral("--all"));
    const bool emptyOnly = flag(args, QStringLiteral("--empty-only"));
    if (all && emptyOnly)
        throw Failure{QStringLiteral("channels takes --all or --empty-only, not both")};
    expectArgs(args, 1, 1);
    auto db = openExisting(args[0]);
    DetectChannelsSettings settings;
    settings.redo = all;
    RunToTheEndWithProgress host;
    const DetectChannelsResult result = DetectChannels(*db, settings, host);
    const QString report = ChannelReportFile();
    if (!WriteChannelReport(report, result))
        throw Failure{QStringLiteral("can't write ") + report};
    print(QStringLiteral("%1 songs, %2 analysed, %3 channels written, %4 kept, %5 undecided (%6)")
              .arg(result.songs)
              .arg(result.analysed)
              .arg(result.written)
              .arg(result.kept)
              .arg(result.undecided.size())
              .arg(report));
    return host.failures() == 0 ? 0 : kUsageError;
}

const CommandRegistration channelsCommand("channels", "channels FILE [--all | --empty-only]", channels);

}  // namespace
}  // namespace td::admin
