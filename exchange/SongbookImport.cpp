#include "exchange/SongbookImport.h"
#include "shell/services/AppError.h"
#include "shell/services/FilePaths.h"
#include "shell/services/Ini.h"
#include "songdb/Connection.h"
#include "songdb/Recordset.h"
#include <QHash>
#include <optional>

namespace td {

namespace {

const QString kCrLf = QStringLiteral("\r\n");
constexpr int kRemarkLength = 255;

// What becomes of a source column in the target row.
enum class Rule { Copy, Remark, Male, Female };
struct Target {
    QString field;
    Rule rule;
};
using ColumnMap = QHash<QString, Target>;

void addNames(ColumnMap& map, std::initializer_list<const char*> names, const char* field, Rule rule = Rule::Copy)
{
    for (const char* n : names)
        map.insert(QString::fromLatin1(n), Target{QString::fromLatin1(field), rule});
}

// Today's song columns under their own names and those of earlier versions; names compare exactly.
const ColumnMap& songColumns()
{
    static const ColumnMap map = [] {
        ColumnMap m;
        addNames(m, {"Name", "Title", "title"}, "title");
        addNames(m, {"Chars", "chars"}, "chars");
        addNames(m, {"Singer", "singer"}, "singer");
        addNames(m, {"Language", "language"}, "language");
        addNames(m, {"Style", "style"}, "style");
        addNames(m, {"Grade", "grade"}, "grade");
        addNames(m, {"Channel", "channel"}, "channel");
        addNames(m, {"OrderTimes", "order_time"}, "order_time");
        addNames(m, {"Region", "region"}, "region");
        addNames(m, {"Position", "MediaFile", "media_file"}, "media_file");
        addNames(m, {"LibraryLocalPath", "Library", "library"}, "library");
        addNames(m, {"lupd_by"}, "lupd_by");
        addNames(m, {"lupd_time"}, "lupd_time");
        addNames(m, {"Remark", "remark"}, "remark", Rule::Remark);
        return m;
    }();
    return map;
}

// Older singer tables keep the sex in two yes/no columns; a capitalised Region was never a singer column.
const ColumnMap& singerColumns()
{
    static const ColumnMap map = [] {
        ColumnMap m;
        addNames(m, {"Name", "name"}, "name");
        addNames(m, {"Male"}, "type", Rule::Male);
        addNames(m, {"Female"}, "type", Rule::Female);
        addNames(m, {"Type", "type"}, "type");
        addNames(m, {"region"}, "region");
        addNames(m, {"Image", "image"}, "image");
        addNames(m, {"ImageLen", "image_len"}, "image_len");
        addNames(m, {"Description", "description"}, "description");
        addNames(m, {"Remark", "remark"}, "remark", Rule::Remark);
        return m;
    }();
    return map;
}

QString configValue(Connection& db, const QString& key, const QString& def)
{
    auto rs = db.openRecordset(QStringLiteral("select [value] from config where [section]='Default' and [key]='") +
                               key + u'\'');
    return rs->RecordCount() >= 1 ? rs->Fields(0).Text() : def;
}

QString quoted(QString text)
{
    return text.replace(u'\'', QStringLiteral("''"));
}

// The source's columns with their targets, in the source's order; the others are dropped.
std::vector<std::pair<int, Target>> mappedColumns(Recordset& source, const ColumnMap& map)
{
    std::vector<std::pair<int, Target>> columns;
    for (int c = 0; c < source.FieldCount(); ++c) {
        const auto target = map.constFind(source.Column(c).name);
        if (target != map.cend())
            columns.emplace_back(c, *target);
    }
    return columns;
}

// One run: songs, then singers, then the closing message.
class Import {
public:
    Import(Connection& db, const SongbookImportSettings& s, JobHost& host)
        : db_(db), s_(s), host_(host), remark_(s.remark.left(kRemarkLength))
    {
    }

    SongbookImportResult run()
    {
        const QString path = NativePath(s_.source);
        if (host_.Ask(QStringLiteral("Import songs & singers from <") + s_.source + QStringLiteral("> ?"),
                      MsgButtons::OkCancel) == MsgAnswer::Cancel)
            return result_;
        if (FileKind(path) != u"f") {
            host_.Fail(QStringLiteral("Can't found < ") + s_.source + QStringLiteral(" > to import!"));
            return result_;
        }
        source_ = OpenAccessDatabase(path, kSongDatabasePassword, s_.access);
        if (importSongs())
            importSingers();
        return close();
    }

private:
    enum class Check { Passed, Crashed, Stopped };

    SongbookImportResult close()
    {
        if (source_)
            source_->close();
        host_.EndProcess();
        result_.closed = true;
        host_.Inform(QString::number(result_.songs) + QStringLiteral(" songs and ") +
                     QString::number(result_.singers) + QStringLiteral(" singers imported to songbook!"));
        return result_;
    }

    // True when the operator wants the import to stop after this failure.
    bool stopAfter(const std::exception& e)
    {
        return host_.Ask(QStringLiteral("An error take place while import to songbook! Err=") + ErrorText(e) + kCrLf +
                             QStringLiteral("Stop import?"),
                         MsgButtons::YesNo) == MsgAnswer::Yes;
    }

    void startAt90(const QString& hint)
    {
        host_.StartProcess(QString(), hint, 0, 100, false);
        host_.Processing(90);
    }

    // The source's rows of a table; nullptr after a failure the operator goes on from, as from an
    // empty table. stop is set when the operator stops there.
    std::unique_ptr<Recordset> openSource(const QString& table, bool& stop)
    {
        try {
            auto rs = source_->openRecordset(QStringLiteral("select * from ") + table);
            if (rs->RecordCount() > 0) {
                rs->MoveFirst();
                rs->MoveLast();
                rs->MoveFirst();
            }
            return rs;
        } catch (const std::exception& e) {
            stop = stopAfter(e);
            return nullptr;
        }
    }

    // False when the run goes to its closing step without the singers.
    bool importSongs()
    {
        startAt90(QStringLiteral("Search songs ..."));
        bool stop = false;
        auto rs = openSource(QStringLiteral("song"), stop);
        if (stop)
            return false;
        if (!rs || rs->RecordCount() == 0) {
            host_.Inform(QStringLiteral("Can't find any song to import!"));
            return true;
        }
        const qsizetype n = rs->RecordCount();
        result_.sourceSongs = n;
        if (host_.Ask(QString::number(n) + QStringLiteral(" song(s) need to be imported, process?"),
                      MsgButtons::OkCancel) == MsgAnswer::Cancel)
            return false;
        if (s_.deleteSongs) {
            startAt90(QStringLiteral("Delete exist songs ..."));
            if (!run(QStringLiteral("delete * from song")))
                return false;
        } else {
            const Check check = checkIndexes(*rs);
            if (check != Check::Passed) {
                result_.songCrash = check == Check::Crashed;
                return false;
            }
        }
        host_.StartProcess(QString(), QStringLiteral("Import songs ..."), 0, n, true);
        rs->MoveFirst();
        std::unique_ptr<Recordset> target;
        try {
            // Only added to: none of the songbook's rows needs reading.
            target = db_.openRecordset(QStringLiteral("select * from song where id=-1"));
        } catch (const std::exception& e) {
            stopAfter(e);  // without the table there is nothing to go on with
            return false;
        }
        const auto columns = mappedColumns(*rs, songColumns());
        long long running = IntegerValue(s_.indexFrom);
        for (qsizetype row = 1; !rs->IsEOF(); ++row) {
            long long index = 0;
            if (s_.indexClass == u"index")
                index = running++;
            try {
                if (s_.indexClass == u"import")
                    index = IntegerValue(rs->Fields(QStringLiteral("Index")).Text());
                addRow(*target, *rs, columns, index);
                ++result_.songs;
            } catch (const std::exception& e) {
                cancelEdit(*target);
                if (stopAfter(e))
                    return false;
            }
            rs->MoveNext();
            host_.Processing(row);
            if (JobStopWanted(host_))
                return false;
        }
        return true;
    }

    bool run(const QString& statement)
    {
        try {
            db_.execute(statement);
            return true;
        } catch (const std::exception& e) {
            return !stopAfter(e);
        }
    }

    static void cancelEdit(Recordset& rs)
    {
        try {
            rs.CancelUpdate();
        } catch (const std::exception&) {
        }
    }

    void addRow(Recordset& target, Recordset& source, const std::vector<std::pair<int, Target>>& columns,
                std::optional<long long> index)
    {
        target.AddNew();
        if (index)
            target.Fields(QStringLiteral("index")).setValue(*index);
        for (const auto& [c, to] : columns) {
            const QVariant value = source.Fields(c).Value();
            switch (to.rule) {
            case Rule::Copy:
                target.Fields(to.field).setValue(value);
                break;
            case Rule::Remark:
                target.Fields(to.field).setValue(remark_.isEmpty() ? value : QVariant(remark_));
                break;
            case Rule::Male:
            case Rule::Female:
                if (value.toBool())
                    target.Fields(to.field).setValue(to.rule == Rule::Male ? QStringLiteral("male")
                                                                           : QStringLiteral("female"));
                break;
            }
        }
        target.Update();
    }

    // False when the operator stops the check at this index's question.
    bool testIndex(long long index, bool& crashed)
    {
        QString line;
        if (index < minIndex_)
            line = QStringLiteral("A song's index to be imported less than MinIndex, Index=");
        else if (index > maxIndex_)
            line = QStringLiteral("A song's index to be imported is more than MaxIndex, Index=");
        else if (db_.openRecordset(QStringLiteral("select id from song where index=") + QString::number(index))
                     ->RecordCount() > 0)
            line = QStringLiteral("A song's index to be imported crashed with a song's index in songbook, Index=");
        else
            return true;
        crashed = true;
        return host_.Ask(line + QString::number(index) + kCrLf + QStringLiteral("Continue checking?"),
                         MsgButtons::OkCancel, QStringLiteral("Song's index crashed")) == MsgAnswer::Ok;
    }

    Check checkIndexes(Recordset& rs)
    {
        host_.StartProcess(QString(), QStringLiteral("Checking index crash ..."), 0, rs.RecordCount(), true);
        minIndex_ = ConfigMinIndex(db_);
        maxIndex_ = ConfigMaxIndex(db_);
        bool crashed = false;
        long long running = IntegerValue(s_.indexFrom);
        rs.MoveFirst();
        for (qsizetype row = 1; !rs.IsEOF(); ++row) {
            try {
                if (s_.indexClass == u"index") {
                    if (!testIndex(running++, crashed))
                        return Check::Stopped;
                } else if (s_.indexClass == u"import") {
                    const long long index = IntegerValue(rs.Fields(QStringLiteral("Index")).Text());
                    if (index != 0 && !testIndex(index, crashed))
                        return Check::Stopped;
                }
            } catch (const std::exception& e) {
                if (stopAfter(e))
                    return Check::Stopped;
            }
            rs.MoveNext();
            host_.Processing(row);
            if (JobStopWanted(host_))
                return Check::Stopped;
        }
        return crashed ? Check::Crashed : Check::Passed;
    }

    // False when the operator wants no singer imported.
    bool checkNames(Recordset& rs)
    {
        host_.StartProcess(QString(), QStringLiteral("Checking singer name crash ..."), 0, rs.RecordCount(), true);
        bool crashed = false;
        rs.MoveFirst();
        for (qsizetype row = 1; !rs.IsEOF(); ++row) {
            try {
                const Field name = rs.Fields(QStringLiteral("name"));
                QString line;
                if (name.IsNull())
                    line = QStringLiteral("A singer's name to be imported is NULL!");
                else if (name.Text().isEmpty())
                    line = QStringLiteral("A singer's name to be imported is blank!");
                else if (singerTaken(name.Text()))
                    line = QStringLiteral("A singer's name to be imported crashed with a singer's name in songbook, Name=") +
                           name.Text();
                if (!line.isEmpty()) {
                    crashed = true;
                    if (host_.Ask(line + kCrLf + QStringLiteral("Continue checking?"), MsgButtons::OkCancel,
                                  QStringLiteral("Singer's name crashed")) == MsgAnswer::Cancel)
                        break;
                }
            } catch (const std::exception& e) {
                if (stopAfter(e))
                    return false;
            }
            rs.MoveNext();
            host_.Processing(row);
            if (JobStopWanted(host_))
                return false;
        }
        result_.singerCrash = crashed;
        return !crashed ||
               host_.Ask(QStringLiteral("At least one singer's name crash detected, do you still want to import "
                                        "singers?") +
                             kCrLf + QStringLiteral("The crashed singer will not be imported!"),
                         MsgButtons::OkCancel) == MsgAnswer::Ok;
    }

    bool singerTaken(const QString& name)
    {
        return db_.openRecordset(QStringLiteral("select name from singer where name='") + quoted(name) + u'\'')
                   ->RecordCount() > 0;
    }

    void importSingers()
    {
        startAt90(QStringLiteral("Search singers ..."));
        bool stop = false;
        auto rs = openSource(QStringLiteral("singer"), stop);
        if (stop || !rs || rs->RecordCount() == 0)
            return;
        const qsizetype m = rs->RecordCount();
        result_.sourceSingers = m;
        if (host_.Ask(QString::number(m) + QStringLiteral(" singer(s) need to be import, process?"),
                      MsgButtons::OkCancel) == MsgAnswer::Cancel)
            return;
        if (s_.deleteSingers) {
            startAt90(QStringLiteral("Delete exist singers ..."));
            if (!run(QStringLiteral("delete * from singer")))
                return;
        } else if (!checkNames(*rs)) {
            return;
        }
        host_.StartProcess(QString(), QStringLiteral("Import singers ..."), 0, m, true);
        rs->MoveFirst();
        const auto columns = mappedColumns(*rs, singerColumns());
        for (qsizetype row = 1; !rs->IsEOF(); ++row) {
            std::unique_ptr<Recordset> target;
            try {
                const Field name = rs->Fields(QStringLiteral("name"));
                if (!name.IsNull() && !name.Text().isEmpty()) {
                    // A singer the songbook has already stays as it is there.
                    target = db_.openRecordset(QStringLiteral("select * from singer where name='") +
                                               quoted(name.Text()) + u'\'');
                    if (target->RecordCount() == 0) {
                        addRow(*target, *rs, columns, std::nullopt);
                        ++result_.singers;
                    }
                }
            } catch (const std::exception& e) {
                if (target)
                    cancelEdit(*target);
                if (stopAfter(e))
                    return;
            }
            rs->MoveNext();
            host_.Processing(row);
            if (JobStopWanted(host_))
                return;
        }
    }

    Connection& db_;
    const SongbookImportSettings& s_;
    JobHost& host_;
    const QString remark_;
    std::unique_ptr<Connection> source_;
    SongbookImportResult result_;
    long long minIndex_ = 0;
    long long maxIndex_ = 0;
};

}  // namespace

long long ConfigMinIndex(Connection& db)
{
    return IntegerValue(configValue(db, QStringLiteral("MinIndex"), QStringLiteral("1000")));
}

long long ConfigMaxIndex(Connection& db)
{
    return IntegerValue(configValue(db, QStringLiteral("MaxIndex"), QStringLiteral("999999")));
}

SongbookImportSettings DefaultSongbookImportSettings(long long minIndex)
{
    SongbookImportSettings s;
    s.indexClass = AppIniRead(QStringLiteral("ImportIndex"), QStringLiteral("import")).toLower();
    s.indexFrom = AppIniRead(QStringLiteral("ImportIndexFrom"), QString::number(minIndex));
    s.deleteSongs = IntegerValue(AppIniRead(QStringLiteral("ImportDeleteSong"), QStringLiteral("0"))) != 0;
    s.deleteSingers = IntegerValue(AppIniRead(QStringLiteral("ImportDeleteSinger"), QStringLiteral("0"))) != 0;
    return s;
}

void SaveSongbookImportDefaults(const SongbookImportSettings& settings)
{
    AppIniWrite(QStringLiteral("ImportIndex"), settings.indexClass);
    AppIniWrite(QStringLiteral("ImportIndexFrom"), settings.indexFrom);
    AppIniWrite(QStringLiteral("ImportDeleteSong"), settings.deleteSongs ? QStringLiteral("1") : QStringLiteral("0"));
    AppIniWrite(QStringLiteral("ImportDeleteSinger"),
                settings.deleteSingers ? QStringLiteral("1") : QStringLiteral("0"));
}

QString DefaultImportSource(const QString& databaseFile)
{
    return ParentPath(databaseFile) + QStringLiteral("/song.db");
}

SongbookImportResult ImportSongbook(Connection& db, const SongbookImportSettings& settings, JobHost& host)
{
    return Import(db, settings, host).run();
}

}  // namespace td
