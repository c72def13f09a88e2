#include "checks/SongListPrint.h"
#include "shell/services/AppError.h"
#include "shell/services/FilePaths.h"
#include "songdb/Connection.h"
#include <QFile>
#include <QPageSize>
#include <xlsxwriter.h>

namespace td {

namespace {

const QString kCrLf = QStringLiteral("\r\n");

// Excel's paper codes of the sizes a template may name.
int paperCode(const QString& paper)
{
    static const QHash<QString, int> codes{{QStringLiteral("letter"), 1}, {QStringLiteral("legal"), 5},
                                           {QStringLiteral("a3"), 8},     {QStringLiteral("a4"), 9},
                                           {QStringLiteral("a5"), 11},    {QStringLiteral("b5"), 13}};
    return codes.value(paper.toLower(), 9);
}

constexpr double kMmPerInch = 25.4;

// The workbook and its one sheet, laid out by the template; closing it writes the file.
class Workbook {
public:
    Workbook(const QString& path, const SongListLayout& l, const QStringList& fields)
    {
        lxw_workbook_options options{};
        options.constant_memory = LXW_TRUE;
        book_ = workbook_new_opt(QFile::encodeName(path).constData(), &options);
        if (!book_)
            throw AppError(QStringLiteral("Can't create file - <") + path + u'>');
        sheet_ = workbook_add_worksheet(book_, "Sheet1");
        const QByteArray font = l.fontName.toUtf8();
        cell_ = workbook_add_format(book_);
        format_set_font_name(cell_, font.constData());
        format_set_font_size(cell_, l.fontSize);
        head_ = workbook_add_format(book_);
        format_set_font_name(head_, font.constData());
        format_set_font_size(head_, l.fontSize);
        if (l.headBold)
            format_set_bold(head_);
        if (l.gridLines) {
            format_set_border(cell_, LXW_BORDER_THIN);
            format_set_border(head_, LXW_BORDER_THIN);
        }
        for (qsizetype c = 0; c < fields.size(); ++c)
            worksheet_set_column(sheet_, lxw_col_t(c), lxw_col_t(c), l.widthOf(fields[c]), nullptr);
        if (l.landscape)
            worksheet_set_landscape(sheet_);
        else
            worksheet_set_portrait(sheet_);
        worksheet_set_paper(sheet_, uint8_t(paperCode(l.paper)));
        worksheet_set_margins(sheet_, l.marginLeft / kMmPerInch, l.marginRight / kMmPerInch,
                              l.marginTop / kMmPerInch, l.marginBottom / kMmPerInch);
        if (!l.header.isEmpty())
            worksheet_set_header(sheet_, l.header.toUtf8().constData());
        if (!l.footer.isEmpty())
            worksheet_set_footer(sheet_, l.footer.toUtf8().constData());
        worksheet_repeat_rows(sheet_, 0, 0);
        worksheet_fit_to_pages(sheet_, 1, 0);
    }
    ~Workbook()
    {
        if (book_)
            workbook_close(book_);
    }
    void close()
    {
        lxw_error e = workbook_close(book_);
        book_ = nullptr;
        if (e != LXW_NO_ERROR)
            throw AppError(QString::fromUtf8(lxw_strerror(e)));
    }
    void text(qint64 row, int col, const QString& value, bool isHead = false)
    {
        check(worksheet_write_string(sheet_, lxw_row_t(row), lxw_col_t(col), value.toUtf8().constData(),
                                     isHead ? head_ : cell_));
    }
    void number(qint64 row, int col, double value)
    {
        check(worksheet_write_number(sheet_, lxw_row_t(row), lxw_col_t(col), value, cell_));
    }
    void blank(qint64 row, int col) { check(worksheet_write_blank(sheet_, lxw_row_t(row), lxw_col_t(col), cell_)); }

private:
    static void check(lxw_error e)
    {
        // A text longer than a cell holds is cut by the writer; nothing else may fail quietly.
        if (e != LXW_NO_ERROR && e != LXW_ERROR_MAX_STRING_LENGTH_EXCEEDED)
            throw AppError(QString::fromUtf8(lxw_strerror(e)));
    }

    lxw_workbook* book_ = nullptr;
    lxw_worksheet* sheet_ = nullptr;
    lxw_format* cell_ = nullptr;
    lxw_format* head_ = nullptr;
};

// A value the store keeps as a number is a number in its cell too, whatever the column's declared type.
bool isNumber(const QVariant& v)
{
    const int id = v.metaType().id();
    return id == QMetaType::LongLong || id == QMetaType::Int || id == QMetaType::Double;
}

bool stopAfter(JobHost& host, const std::exception& e)
{
    return host.Ask(QStringLiteral("An error take place while printing! Err=") + ErrorText(e) + kCrLf +
                        QStringLiteral("Stop process?"),
                    MsgButtons::YesNo) == MsgAnswer::Yes;
}

}  // namespace

std::function<int(const QString&)> SongFieldTypes(Connection& db)
{
    auto rs = std::shared_ptr<Recordset>(db.openRecordset(QStringLiteral("select * from song where index=1")));
    return [rs](const QString& field) {
        const int c = rs->FieldIndex(field);
        return c < 0 ? 0 : rs->Column(c).type;
    };
}

SongList MakeSongList(Connection& db, const SongListRequest& request, JobHost& host)
{
    SongList list;
    list.captions = request.captions;
    std::unique_ptr<Recordset> rs;
    try {
        rs = db.openRecordset(PrintStatement(request.choice, SongFieldTypes(db)));
    } catch (const std::exception&) {
        host.Fail(QStringLiteral("PreviewSonglist failed!"));
        return list;
    }
    list.songs = rs->RecordCount();
    if (list.songs == 0) {
        host.Inform(QStringLiteral("There isn't any song be selected!"));
        return list;
    }
    if (host.Ask(QString::number(list.songs) + QStringLiteral(" song(s) will be printed, continue?"),
                 MsgButtons::YesNo) != MsgAnswer::Yes)
        return list;
    if (FileKind(request.templateFile) != u"f") {
        host.Fail(QStringLiteral("Can't find file - <") + request.templateFile + u'>');
        return list;
    }
    list.layout = ReadSongListLayout(request.templateFile);
    if (FileKind(request.workbook) == u"f") {
        QFile old(request.workbook);
        old.setPermissions(old.permissions() | QFileDevice::WriteOwner);
        old.remove();
    }
    host.StartProcess(QString(), QStringLiteral("Prepare to print ..."), 0, list.songs, true);
    try {
        Workbook book(request.workbook, list.layout, request.choice.fields);
        const int columns = rs->FieldCount();
        std::vector<bool> numeric(std::size_t(columns > 0 ? columns : 0));
        for (int c = 0; c < columns; ++c)
            numeric[std::size_t(c)] = IsNumericAdoType(rs->Column(c).type);
        bool cancelled = false;
        try {
            for (int c = 0; c < request.captions.size(); ++c)
                book.text(0, c, request.captions[c], true);
        } catch (const std::exception& e) {
            if (stopAfter(host, e))
                cancelled = true;
        }
        for (qsizetype r = 0; r < list.songs && !cancelled; ++r) {
            QStringList texts;
            try {
                for (int c = 0; c < columns; ++c) {
                    const QString text = rs->text(r, c);
                    if (rs->isNull(r, c))
                        book.blank(r + 1, c);
                    else if (numeric[std::size_t(c)] || isNumber(rs->value(r, c)))
                        book.number(r + 1, c, rs->value(r, c).toDouble());
                    else
                        book.text(r + 1, c, text);
                    if (request.keepRows)
                        texts << text;
                }
            } catch (const std::exception& e) {
                if (stopAfter(host, e))
                    break;
            }
            if (request.keepRows)
                list.rows << texts;
            host.Processing(r + 1);
            cancelled = JobStopWanted(host);
        }
        rs->Close();
        book.close();
        list.written = true;
    } catch (const std::exception& e) {
        host.Fail(QStringLiteral("PriviewSonglist failed! Err=") + ErrorText(e));
    }
    host.EndProcess();
    return list;
}

}  // namespace td
