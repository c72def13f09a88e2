#pragma once
#include "shell/services/JobHost.h"
#include "songbook/VocalChannel.h"
#include <QList>
#include <QString>
#include <functional>

namespace td {

class Connection;

struct DetectChannelsSettings {
    QList<qint64> ids;  // the songs, by id; empty means every song of the songbook
    bool redo = false;  // also songs whose channel is already filled in
};

// A song the detection left for the operator's ears.
struct UndecidedSong {
    qint64 id = 0;
    QString index;
    QString title;
    QString path;  // the media file sought
    ChannelVerdict verdict;
};

struct DetectChannelsResult {
    qint64 songs = 0;     // songs looked at
    qint64 analysed = 0;  // songs whose media file was analysed
    qint64 written = 0;   // channels written
    qint64 kept = 0;      // channels left as they were: filled in, and no redo asked
    bool canceled = false;
    QList<UndecidedSong> undecided;
};

// The analysis of one file; tests put a stand-in here.
using ChannelAnalysis = std::function<ChannelVerdict(const QString& path)>;

// The channel detection of the songbook window and of tunedesk-admin "channels": finds the vocal channel
// of each song's media file and writes it into the song's field channel where that is empty (or,
// with redo, whatever it holds) and the verdict is confident. Each write is its own statement, so
// a cancel keeps what was written. Songs without a verdict (or without their file) are listed.
DetectChannelsResult DetectChannels(Connection& db, const DetectChannelsSettings& settings, JobHost& host,
                                    const ChannelAnalysis& analyse = DetectVocalChannel);

// Writes the list of undecided songs to a text report; false when the file cannot be written.
bool WriteChannelReport(const QString& file, const DetectChannelsResult& result);

// The report beside the program: VocalChannel.log.
QString ChannelReportFile();

}  // namespace td
