// The songbook's "Detect channels": the vocal channel of the selected songs, found as a long job.
#include "controls/JobRunner.h"
#include "controls/ctlDataView.h"
#include "shell/services/AppError.h"
#include "shell/services/Dialogs.h"
#include "shell/services/Shell.h"
#include "shell/services/Translate.h"
#include "songbook/DetectChannels.h"
#include "songbook/frmSong.h"
#include "songdb/Connection.h"
#include "songdb/SongSession.h"
#include <QEventLoop>

namespace td {

// Fills the empty channels of the selected songs that the analysis is sure of; the songs it could not
// decide are listed in VocalChannel.log, which opens in the editor for listening in the preview.
void frmSong::DetectSongChannels()
{
    QList<int> selected;
    if (selectionOrSay(selected, TranslateText(QStringLiteral("Please select songs to detect their channels"))) == 0)
        return;
    DetectChannelsSettings settings;
    Recordset* rs = ctlView_->mrsMain();
    for (qsizetype i = 1; i < selected.size(); ++i)
        if (rs && rs->setBookmark(ctlView_->MainItems().Tag(selected[i])))
            settings.ids << rs->Fields(QStringLiteral("ID")).Value().toLongLong();
    const QString database = SongDatabaseFile();
    DetectChannelsResult result;
    {
        JobRunner runner(this);
        QEventLoop loop;
        connect(&runner, &JobRunner::Finished, &loop, &QEventLoop::quit);
        const bool started = runner.start([&settings, &result, database](JobHost& host) {
            try {
                auto db = OpenConnection(database);
                result = DetectChannels(*db, settings, host);
            } catch (const std::exception& e) {
                host.Fail(TranslateText(QStringLiteral("Can't read songs to detect channels!")) + ErrSuffix(e));
            }
        });
        if (started)
            loop.exec();
    }
    RefreshData();
    SetLogPane(TranslateText(QStringLiteral("Channels found:")) + u' ' + QString::number(result.written) +
               QStringLiteral(", ") + TranslateText(QStringLiteral("undecided:")) + u' ' +
               QString::number(result.undecided.size()));
    if (!result.undecided.isEmpty() && WriteChannelReport(ChannelReportFile(), result))
        Shell().edit(ChannelReportFile());
}

}  // namespace td
