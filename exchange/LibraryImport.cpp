#include "exchange/LibraryImport.h"
#include "libraries/FileFinder.h"
#include "shell/services/AppError.h"
#include "shell/services/FilePaths.h"
#include "shell/services/Ini.h"
#include "shell/services/TextStore.h"
#include "songdb/Connection.h"
#include "songdb/DateText.h"
#include "songdb/Recordset.h"
#include <QDate>
#include <QHash>

namespace td {

namespace {

const QString kCrLf = QStringLiteral("\r\n");

enum class Kind { Text, Number, Date };
struct Target {
    QString field;
    Kind kind;
};

// The keys a song information file may hold, the older capitalised ones of earlier versions included.
const QHash<QString, Target>& songKeys()
{
    static const QHash<QString, Target> keys = [] {
        QHash<QString, Target> k;
        auto add = [&k](std::initializer_list<const char*> names, const char* field, Kind kind) {
            for (const char* n : names)
                k.insert(QString::fromLatin1(n), Target{QString::fromLatin1(field), kind});
        };
        add({"Name", "Title", "title"}, "title", Kind::Text);
        add({"Chars", "chars"}, "chars", Kind::Number);
        add({"Singer", "singer"}, "singer", Kind::Text);
        add({"Language", "language"}, "language", Kind::Text);
        add({"Style", "style"}, "style", Kind::Text);
        add({"Grade", "grade"}, "grade", Kind::Number);
        add({"Channel", "channel"}, "channel", Kind::Text);
        add({"OrderTimes", "order_time"}, "order_time", Kind::Number);
        add({"Region", "region"}, "region", Kind::Text);
        add({"lupd_by"}, "lupd_by", Kind::Text);
        add({"lupd_time"}, "lupd_time", Kind::Date);
        add({"Remark", "remark"}, "remark", Kind::Text);
        return k;
    }();
    return keys;
}

QString configValue(Connection& db, const QString& key, const QString& def)
{
    auto rs = db.openRecordset(QStringLiteral("select [value] from config where [section]='Default' and [key]='") +
                               key + u'\'');
    return rs->RecordCount() >= 1 ? rs->Fields(0).Text() : def;
}

// The index a section holds under "index", else under "Index"; empty when neither has a value.
QString sectionIndex(const QString& text, const QString& section)
{
    const QString lower = ReadTextValue(text, section, QStringLiteral("index"), QString());
    return lower.isEmpty() ? ReadTextValue(text, section, QStringLiteral("Index"), QString()) : lower;
}

// The three phases of one import, sharing the file list and the host.
class Import {
public:
    Import(Connection& db, const LibraryImportSettings& s, JobHost& host) : db_(db), s_(s), host_(host) {}

    LibraryImportResult run()
    {
        const QString root = NativePath(s_.library);
        TextArray found;
        int attributes = ATTR_READONLY | ATTR_HIDDEN;
        FindFiles(root, QStringLiteral("*.son"), -1, found, attributes);
        files_ = found.mid(1);
        result_.files = files_.size();
        if (files_.isEmpty()) {
            host_.Inform(QStringLiteral("There is no song in selected library can be imported!"));
            return result_;
        }
        if (host_.Ask(QString::number(files_.size()) +
                          QStringLiteral(" media file(s) in selected library will be imported, process?"),
                      MsgButtons::OkCancel) == MsgAnswer::Cancel)
            return result_;
        if (s_.checkIndex) {
            const Check check = checkIndexes();
            if (check == Check::Crashed) {
                result_.crashed = true;
                return result_;
            }
            if (check == Check::Stopped)
                return finish();
        }
        std::unique_ptr<Recordset> rs;
        try {
            // Only added to: none of the songbook's rows needs reading.
            rs = db_.openRecordset(QStringLiteral("select * from song where id=-1"));
        } catch (const std::exception&) {
            host_.Fail(QStringLiteral("Can't open song table to import!"));
            return result_;
        }
        importFiles(*rs, root.size());
        rs->Close();
        return finish();
    }

private:
    enum class Check { Passed, Crashed, Stopped };

    LibraryImportResult finish()
    {
        host_.EndProcess();
        result_.closed = true;
        host_.Inform(QString::number(result_.added) +
                     QStringLiteral("song(s) imported to songbook successfully!"));
        return result_;
    }

    // False when the operator stops the check at this index's question.
    bool testIndex(long long index, bool& crashed)
    {
        QString line;
        if (index < minIndex_)
            line = QStringLiteral("A song's index in library less than MinIndex, Index=");
        else if (index > maxIndex_)
            line = QStringLiteral("A song's index in library is more than MaxIndex, Index=");
        else if (!indexFree(index))
            line = QStringLiteral("A song's index in library crashed with a song's index in songbook, Index=");
        else
            return true;
        crashed = true;
        return host_.Ask(line + QString::number(index) + kCrLf + QStringLiteral("Continue checking?"),
                         MsgButtons::OkCancel, QStringLiteral("Song index crashed")) == MsgAnswer::Ok;
    }

    bool indexFree(long long index)
    {
        if (index <= 0)
            return false;
        return db_.openRecordset(QStringLiteral("select id from song where index=") + QString::number(index))
                   ->RecordCount() < 1;
    }

    // The check counts from indexFrom itself while the import numbers from the one after it; a venue's
    // habit of giving the last number used depends on that difference.
    Check checkIndexes()
    {
        host_.StartProcess(QString(), QStringLiteral("Checking index crash ..."), 0, files_.size(), true);
        minIndex_ = IntegerValue(configValue(db_, QStringLiteral("MinIndex"), QStringLiteral("1000")));
        maxIndex_ = IntegerValue(configValue(db_, QStringLiteral("MaxIndex"), QStringLiteral("999999")));
        bool crashed = false;
        long long running = IntegerValue(s_.indexFrom);
        for (qsizetype f = 0; f < files_.size(); ++f) {
            if (s_.indexClass == u"index") {
                for (qsizetype r = 0; r < s_.regions.size(); ++r)
                    if (!testIndex(running++, crashed))
                        return Check::Stopped;
            } else if (s_.indexClass == u"import") {
                const QString text = readOrEmpty(files_[f]);
                for (const QString& region : s_.regions) {
                    long long index =
                        IntegerValue(ReadTextValue(text, region, QStringLiteral("index"), QStringLiteral("0")));
                    if (index == 0)
                        index = IntegerValue(
                            ReadTextValue(text, region, QStringLiteral("Index"), QStringLiteral("0")));
                    if (index != 0 && !testIndex(index, crashed))
                        return Check::Stopped;
                }
            }
            host_.Processing(f + 1);
            if (JobStopWanted(host_))
                return Check::Stopped;
        }
        host_.EndProcess();
        return crashed ? Check::Crashed : Check::Passed;
    }

    // A file that cannot be read holds nothing to test; the import reports it.
    static QString readOrEmpty(const QString& path)
    {
        try {
            return ReadTextStore(path);
        } catch (const std::exception&) {
            return {};
        }
    }

    // True when the operator wants the import to stop after this failure.
    bool stopAfter(const std::exception& e)
    {
        return host_.Ask(QStringLiteral("An error take place while import library! Err=") + ErrorText(e) + kCrLf +
                             QStringLiteral("Stop import?"),
                         MsgButtons::YesNo) == MsgAnswer::Yes;
    }

    // The keys of the first file serve for every file.
    void takeKeys()
    {
        try {
            TextArray names;
            ReadTextKeys(ReadTextStore(files_.front()), names);
            for (int i = 1; i <= UBound(names); ++i)
                if (!keys_.contains(names[i]))
                    keys_ << names[i];
        } catch (const std::exception& e) {
            if (stopAfter(e))
                stopped_ = true;
        }
    }

    void importFiles(Recordset& rs, qsizetype rootLength)
    {
        long long running = s_.indexClass == u"index" ? IntegerValue(s_.indexFrom) : 0;
        host_.StartProcess(QString(), QStringLiteral("Import songs ..."), 0, files_.size(), true);
        if (!s_.regions.isEmpty())
            takeKeys();
        for (qsizetype f = 0; f < files_.size() && !stopped_; ++f) {
            const QString& path = files_[f];
            QString text;
            try {
                text = ReadTextStore(path);
            } catch (const std::exception& e) {
                if (stopAfter(e))
                    break;
            }
            const QString mediaFile = path.mid(rootLength).chopped(4);
            for (const QString& region : s_.regions) {
                const QString index = sectionIndex(text, region);
                if (index.isEmpty())
                    continue;
                long long songIndex = 0;
                if (s_.indexClass == u"import")
                    songIndex = IntegerValue(index);
                else if (s_.indexClass == u"index")
                    songIndex = ++running;
                try {
                    addRow(rs, text, region, songIndex, mediaFile);
                    ++result_.added;
                } catch (const std::exception& e) {
                    try {
                        rs.CancelUpdate();
                    } catch (const std::exception&) {
                    }
                    if (stopAfter(e)) {
                        stopped_ = true;
                        break;
                    }
                }
            }
            host_.Processing(f + 1);
            if (!stopped_ && JobStopWanted(host_))
                stopped_ = true;
        }
    }

    void addRow(Recordset& rs, const QString& text, const QString& region, long long index,
                const QString& mediaFile)
    {
        rs.AddNew();
        rs.Fields(QStringLiteral("index")).setValue(index);
        for (const QString& key : keys_) {
            const auto target = songKeys().constFind(key);
            if (target == songKeys().cend())
                continue;
            const Field field = rs.Fields(target->field);
            switch (target->kind) {
            case Kind::Text:
                field.setValue(ReadTextValue(text, region, key, QString()));
                break;
            case Kind::Number:
                field.setValue(IntegerValue(ReadTextValue(text, region, key, QStringLiteral("0"))));
                break;
            case Kind::Date: {
                const QString stored = DateToStore(ReadTextValue(text, region, key, QString()));
                if (!stored.isEmpty())
                    field.setValue(stored);
                break;
            }
            }
        }
        // The library is where it lies now, whatever the file says: a moved library imports as it is.
        rs.Fields(QStringLiteral("library")).setValue(s_.library);
        rs.Fields(QStringLiteral("media_file")).setValue(mediaFile);
        if (!s_.remark.isEmpty())
            rs.Fields(QStringLiteral("remark")).setValue(s_.remark);
        rs.Update();
    }

    Connection& db_;
    const LibraryImportSettings& s_;
    JobHost& host_;
    QStringList files_;
    QStringList keys_;
    LibraryImportResult result_;
    long long minIndex_ = 0;
    long long maxIndex_ = 0;
    bool stopped_ = false;
};

}  // namespace

LibraryImportSettings DefaultLibraryImportSettings(long long minIndex)
{
    LibraryImportSettings s;
    s.indexClass = AppIniRead(QStringLiteral("ImportIndex"), QStringLiteral("import")).toLower();
    s.indexFrom = AppIniRead(QStringLiteral("ImportIndexFrom"), QString::number(minIndex));
    s.checkIndex = IntegerValue(AppIniRead(QStringLiteral("CheckIndex"), QStringLiteral("1"))) != 0;
    return s;
}

void SaveLibraryImportDefaults(const LibraryImportSettings& settings)
{
    AppIniWrite(QStringLiteral("ImportIndex"), settings.indexClass);
    AppIniWrite(QStringLiteral("ImportIndexFrom"), settings.indexFrom);
    AppIniWrite(QStringLiteral("CheckIndex"), settings.checkIndex ? QStringLiteral("1") : QStringLiteral("0"));
}

QString LibraryImportRemark(const QString& library)
{
    return QStringLiteral("Import from ") + library + QStringLiteral(" at ") +
           QDate::currentDate().toString(QStringLiteral("yyyy-MM-dd"));
}

LibraryImportResult ImportLibrary(Connection& db, const LibraryImportSettings& settings, JobHost& host)
{
    return Import(db, settings, host).run();
}

}  // namespace td
