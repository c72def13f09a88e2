#include "singers/SingerExchange.h"
#include "libraries/FileFinder.h"
#include "shell/services/AppError.h"
#include "shell/services/AppPaths.h"
#include "shell/services/FilePaths.h"
#include "shell/services/Ini.h"
#include "shell/services/IniDocument.h"
#include "songdb/Connection.h"
#include "songdb/RecordAccess.h"
#include "songdb/Recordset.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <functional>

namespace td {

namespace {

const QString kDefault = QStringLiteral("Default");

// The information file's keys beside the fields they hold; the import reads the second in lower case.
struct InfoKey {
    const char* key;
    const char* importKey;
    const char* field;
};
constexpr InfoKey kInfoKeys[] = {
    {"Type", "Type", "type"},
    {"Description", "description", "description"},
    {"remark", "remark", "remark"},
};

QString quoted(const QString& value)
{
    QString q = value;
    return q.replace(u'\'', QStringLiteral("''"));
}

// The files of the folder itself with the extension, in name order.
QStringList folderFiles(const QString& folder, const QString& pattern)
{
    TextArray found;
    int attributes = ATTR_READONLY | ATTR_ARCHIVE;
    FindFiles(folder, pattern, 0, found, attributes);
    return found.mid(1);
}

bool folderWritable(const QString& folder)
{
    // A probe rather than the mode bits: a read-only mount or another owner refuses as well.
    QFile probe(QDir(folder).filePath(QStringLiteral(".tunedesk-write-test")));
    if (!probe.open(QIODevice::WriteOnly))
        return false;
    probe.close();
    probe.remove();
    return true;
}

// What both directions share: the folder, the host and the counts.
class Exchange {
public:
    Exchange(Connection& db, const QString& folder, JobHost& host) : db_(db), folder_(folder), host_(host) {}

protected:
    bool confirmed(const QString& question)
    {
        return host_.Ask(question, MsgButtons::OkCancel) != MsgAnswer::Cancel;
    }

    Connection& db_;
    QString folder_;
    JobHost& host_;
    SingerExchangeResult result_;
};

class Export : Exchange {
public:
    using Exchange::Exchange;

    SingerExchangeResult run()
    {
        if (!confirmed(QStringLiteral("Export all singers' image & information to folder <") + folder_ +
                       QStringLiteral("> ?")))
            return result_;
        if (FileKind(folder_) != u"p") {
            if (!confirmed(QStringLiteral("Folder <") + folder_ + QStringLiteral("> no exist, create it?")))
                return result_;
            if (!QDir().mkpath(folder_)) {
                host_.Fail(QStringLiteral("Can't create folder <") + folder_ + QStringLiteral(">!"));
                return finish();
            }
        }
        if (!folderWritable(folder_)) {
            host_.Fail(QStringLiteral("Folder <") + folder_ + QStringLiteral("> is read-only, can't export!"));
            return finish();
        }
        host_.StartProcess(QString(), QStringLiteral("Search singers ..."), 90, 100, false);
        std::unique_ptr<Recordset> rs;
        try {
            rs = db_.openRecordset(QStringLiteral("select * from singer"));
        } catch (const std::exception& e) {
            host_.Fail(QStringLiteral("ExportSinger failed! ") + ErrSuffix(e));
            return finish();
        }
        const qsizetype count = rs->RecordCount();
        if (count == 0) {
            host_.Inform(QStringLiteral("There isn't any singer need to export!"));
            return finish();
        }
        if (!confirmed(QString::number(count) + QStringLiteral(" singer(s) need to be exported, process?")))
            return finish();
        host_.StartProcess(QString(), QStringLiteral("Export singers ..."), 0, count, true);
        qint64 step = 0;
        for (rs->MoveFirst(); !rs->IsEOF(); rs->MoveNext()) {
            exportSinger(*rs);
            host_.Processing(++step);
            if (JobStopWanted(host_))
                break;
        }
        rs->Close();
        return finish();
    }

private:
    void exportSinger(Recordset& rs)
    {
        QString name;
        try {
            name = rs.Fields(QStringLiteral("name")).Text();
            if (name.isEmpty())
                return;
            const QString base = QDir(folder_).filePath(SingerFileName(name));
            WriteImageFile(rs, base + QStringLiteral(".jpg"));
            // The keys go into the file as they stand in it, written once rather than key by key.
            const QString info = base + QStringLiteral(".inf");
            IniDocument doc = IniDocument::load(info);
            bool anyValue = false;
            for (const InfoKey& k : kInfoKeys) {
                const Field field = rs.Fields(QString::fromLatin1(k.field));
                if (!field.IsNull()) {
                    doc.setValue(kDefault, QString::fromLatin1(k.key), field.Text());
                    anyValue = true;
                }
            }
            if (anyValue && !doc.save(info))
                throw AppError(QStringLiteral("Can't write ") + info);
            ++result_.exported;
        } catch (const std::exception& e) {
            host_.Fail(QStringLiteral("Can't export singer <") + name + QStringLiteral(">!") + ErrSuffix(e));
        }
    }

    SingerExchangeResult finish()
    {
        host_.EndProcess();
        host_.Inform(QString::number(result_.exported) + QStringLiteral(" singer(s) exported!"));
        result_.closed = true;
        return result_;
    }
};

class Import : Exchange {
public:
    using Exchange::Exchange;

    SingerExchangeResult run()
    {
        if (!confirmed(QStringLiteral("Import all singers' image & information from folder <") + folder_ +
                       QStringLiteral("> ?")))
            return result_;
        if (FileKind(folder_) != u"p") {
            host_.Inform(QStringLiteral("Folder <") + folder_ + QStringLiteral("> no exist, can't import!"));
            return result_;
        }
        // A stop among the information files leaves the photographs unread.
        const bool goOn = eachFile(
            QStringLiteral("*.inf"), QStringLiteral("There isn't any singer's information need to be imported!"),
            QStringLiteral(" singers' information need to be imported, process?"),
            QStringLiteral("Import singers' information ..."), [this](const QString& file) {
                importInformation(file);
                ++result_.infos;  // a file counts though its row could not be written
            });
        if (goOn)
            eachFile(QStringLiteral("*.jpg"), QStringLiteral("There isn't any singer's image need to be imported!"),
                     QStringLiteral(" singers' image need to be imported, process?"),
                     QStringLiteral("Import singers' image ..."), [this](const QString& file) { importImage(file); });
        host_.EndProcess();
        host_.Inform(QString::number(result_.infos) + QStringLiteral(" singers' information and ") +
                     QString::number(result_.images) + QStringLiteral(" singers' image imported!"));
        result_.closed = true;
        return result_;
    }

private:
    // Runs step over the folder's files of the pattern, after the count's question and with progress.
    // False when the operator stopped the run.
    bool eachFile(const QString& pattern, const QString& none, const QString& question, const QString& hint,
                  const std::function<void(const QString&)>& step)
    {
        const QStringList files = folderFiles(folder_, pattern);
        if (files.isEmpty()) {
            host_.Inform(none);
            return true;
        }
        if (!confirmed(QString::number(files.size()) + question))
            return true;
        host_.StartProcess(QString(), hint, 0, files.size(), true);
        qint64 done = 0;
        for (const QString& file : files) {
            step(file);
            host_.Processing(++done);
            if (JobStopWanted(host_))
                return false;
        }
        return true;
    }

    // The row of the singer the file stands for, a new one when there is none; update says whether a
    // new row is written at once or left for the caller to fill.
    std::unique_ptr<Recordset> singerRow(const QString& name, bool update)
    {
        auto rs = db_.openRecordset(QStringLiteral("select * from singer where name='") + quoted(name) + u'\'');
        if (rs->RecordCount() > 0) {
            rs->MoveFirst();
            return rs;
        }
        rs->AddNew();
        rs->Fields(QStringLiteral("name")).setValue(name);
        if (update)
            rs->Update();
        return rs;
    }

    void importInformation(const QString& file)
    {
        const QString name = SingerNameOfFile(file);
        std::unique_ptr<Recordset> rs;
        try {
            rs = singerRow(name, false);
            for (const InfoKey& k : kInfoKeys)
                rs->Fields(QString::fromLatin1(k.field))
                    .setValue(IniRead(file, kDefault, QString::fromLatin1(k.importKey), QString()));
            rs->Update();
        } catch (const std::exception& e) {
            failed(rs.get(), QStringLiteral("Can't import singer <") + name + QStringLiteral(">!") + ErrSuffix(e));
        }
    }

    void importImage(const QString& file)
    {
        // Checked before any row is touched, so a bad file neither adds a singer nor clears a photograph.
        if (!IsJpegFile(file)) {
            host_.Fail(QStringLiteral("Only jpg file support.") + QStringLiteral(" <") + file + u'>');
            return;
        }
        const QString name = SingerNameOfFile(file);
        std::unique_ptr<Recordset> rs;
        try {
            rs = singerRow(name, true);
            StoreImageFile(*rs, file);
            ++result_.images;
        } catch (const std::exception& e) {
            failed(rs.get(), QStringLiteral("Can't import image of singer <") + name + QStringLiteral(">!") +
                                 ErrSuffix(e));
        }
    }

    // The row's edit is dropped and the run goes on with the next file.
    void failed(Recordset* rs, const QString& text)
    {
        try {
            if (rs && rs->IsOpen() && rs->editMode() != Recordset::EditMode::None)
                rs->CancelUpdate();
        } catch (const std::exception&) {
            // the row is dropped with the recordset
        }
        host_.Fail(text);
    }
};

}  // namespace

QString SingerFolder()
{
    return AppPath() + QStringLiteral("/Singer");
}

QString SingerFileName(const QString& name)
{
    QString file = name;
    for (const QChar c : {u'/', u'\\', u'|', u':', u'?', u'*'})
        file.replace(c, u'&');
    for (const QChar c : {u'<', u'>', u'"'})
        file.remove(c);
    return file;
}

QString SingerNameOfFile(const QString& file)
{
    // Cut at the first "." as BaseNameOf cuts, but a "\" in a file name here is part of the name.
    QString base = QFileInfo(file).fileName();
    const qsizetype dot = base.indexOf(u'.');
    if (dot >= 0)
        base.truncate(dot);
    return base.replace(u'&', u'/');
}

bool IsJpegFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() < 4)
        return false;
    if (!file.read(3).startsWith("\xFF\xD8\xFF"))
        return false;
    // The end mark stands last, after at most some padding a camera or an editor leaves.
    constexpr qint64 kTail = 4096;
    file.seek(qMax<qint64>(3, file.size() - kTail));
    QByteArray tail = file.readAll();
    while (!tail.isEmpty() && (tail.back() == '\0' || tail.back() == '\n' || tail.back() == '\r'))
        tail.chop(1);
    return tail.endsWith("\xFF\xD9");
}

SingerExchangeResult ExportSingers(Connection& db, const QString& folder, JobHost& host)
{
    return Export(db, folder, host).run();
}

SingerExchangeResult ImportSingers(Connection& db, const QString& folder, JobHost& host)
{
    return Import(db, folder, host).run();
}

}  // namespace td
