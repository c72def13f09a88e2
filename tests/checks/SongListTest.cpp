// The printed song list: the statement for each compare and field type, the workbook's cells read back
// from the sheet inside the .xlsx, the template, and the pages of a long list as a PDF.
#include "checks/SongListPages.h"
#include "checks/SongListPrint.h"
#include "songdb/Connection.h"
#include "songdb/Schema.h"
#include "support/QtApp.h"
#include "support/QtPrint.h"
#include "CheckHost.h"
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace td;
using td::test::CheckHost;

namespace {

class SongListTest : public testing::Test {
protected:
    void SetUp() override
    {
        CreateSongDatabase(tmp.filePath(QStringLiteral("song.db")), QStringLiteral("English"));
        db = OpenConnection(tmp.filePath(QStringLiteral("song.db")));
        types = SongFieldTypes(*db);
        templateFile = tmp.filePath(QStringLiteral("PrintTemplate.ini"));
        QFile::copy(QStringLiteral(TUNEDESK_SOURCE_DIR "/data/PrintTemplate.ini"), templateFile);
    }
    void song(const QString& values)
    {
        db->execute(QStringLiteral("insert into song ([index], title, singer, chars, remark) values (") + values +
                    u')');
    }
    SongListRequest request(const QStringList& fields, const QStringList& captions)
    {
        SongListRequest r;
        r.choice.fields = fields;
        r.captions = captions;
        r.templateFile = templateFile;
        r.workbook = tmp.filePath(QStringLiteral("SongList.xlsx"));
        return r;
    }
    // One part of the workbook, read back as the spreadsheet application would unpack it.
    QString part(const QString& name)
    {
        QProcess unzip;
        unzip.start(QStringLiteral("unzip"), {QStringLiteral("-p"), tmp.filePath(QStringLiteral("SongList.xlsx")), name});
        unzip.waitForFinished();
        return QString::fromUtf8(unzip.readAllStandardOutput());
    }
    // The cells of the sheet as "A1=text", "B2=#number" or "C3=" (an empty cell), in the sheet's order.
    QStringList cells()
    {
        const QString xml = part(QStringLiteral("xl/worksheets/sheet1.xml"));
        static const QRegularExpression cell(QStringLiteral(
            R"re(<c r="([A-Z]+\d+)"[^>]*?(?:/>|>(?:<is><t[^>]*>([^<]*)</t></is>|<v>([^<]*)</v>)</c>))re"));
        QStringList out;
        for (auto it = cell.globalMatch(xml); it.hasNext();) {
            const auto m = it.next();
            out << m.captured(1) + u'=' + (m.captured(3).isEmpty() ? m.captured(2) : u'#' + m.captured(3));
        }
        return out;
    }

    QTemporaryDir tmp;
    std::unique_ptr<Connection> db;
    std::function<int(const QString&)> types;
    QString templateFile;
    CheckHost host;
};

TEST_F(SongListTest, StatementQuotesByTheFieldTypeTheStoreReports)
{
    struct Case {
        PrintCondition condition;
        const char* where;
    };
    const Case cases[] = {
        {{QStringLiteral("index"), QStringLiteral("="), QStringLiteral("1000")}, "[index] = 1000"},
        {{QStringLiteral("index"), QStringLiteral("<>"), QStringLiteral("1000")}, "[index] <> 1000"},
        {{QStringLiteral("order_time"), QStringLiteral(">"), QStringLiteral("5")}, "[order_time] > 5"},
        {{QStringLiteral("index"), QStringLiteral("<"), QStringLiteral("2000")}, "[index] < 2000"},
        {{QStringLiteral("index"), QStringLiteral(">="), QStringLiteral("1")}, "[index] >= 1"},
        {{QStringLiteral("index"), QStringLiteral("<="), QStringLiteral("9")}, "[index] <= 9"},
        {{QStringLiteral("index"), QStringLiteral("LIKE"), QStringLiteral("10%")}, "[index] LIKE 10%"},
        {{QStringLiteral("title"), QStringLiteral("LIKE"), QStringLiteral("%Love%")}, "[title] LIKE '%Love%'"},
        {{QStringLiteral("title"), QStringLiteral("="), QStringLiteral("月亮")}, "[title] = '月亮'"},
        // A small integer is quoted, and the store compares as it can.
        {{QStringLiteral("chars"), QStringLiteral(">"), QStringLiteral("3")}, "[chars] > '3'"},
        {{QStringLiteral("lupd_time"), QStringLiteral(">="), QStringLiteral("2026-01-01")},
         "[lupd_time] >= '2026-01-01'"},
        {{QStringLiteral("singer"), QStringLiteral("NULL"), QStringLiteral("ignored")}, "[singer] is NULL"},
        {{QStringLiteral("remark"), QStringLiteral("NOT NULL"), QString()}, "[remark] is NOT NULL"},
        // As typed: an apostrophe is not doubled.
        {{QStringLiteral("singer"), QStringLiteral("="), QStringLiteral("O'Neil")}, "[singer] = 'O'Neil'"},
    };
    for (const Case& c : cases) {
        PrintChoice choice{{QStringLiteral("index"), QStringLiteral("title")}, {c.condition}, {}};
        EXPECT_EQ(PrintStatement(choice, types),
                  QStringLiteral("select [index], [title] from song where ") + QString::fromUtf8(c.where) + u' ')
            << c.where;
    }
}

TEST_F(SongListTest, StatementLeavesOutEmptyConditionsAndOrders)
{
    PrintChoice choice{{QStringLiteral("title")},
                       {{QString(), QStringLiteral("="), QStringLiteral("x")},
                        {QStringLiteral("singer"), QStringLiteral("="), QStringLiteral("A")},
                        {QStringLiteral("grade"), QStringLiteral("NULL"), QString()}},
                       {QStringLiteral("singer"), QString(), QStringLiteral("index")}};
    EXPECT_EQ(PrintStatement(choice, types),
              QStringLiteral("select [title] from song where [singer] = 'A' and [grade] is NULL order by [singer], "
                             "[index] "));
    EXPECT_EQ(PrintStatement(PrintChoice{}, types), QStringLiteral("select  from song "));
}

TEST_F(SongListTest, WorkbookHoldsCaptionsThenOneRowPerSongInOrder)
{
    song(QStringLiteral("1002, '月亮代表我的心', '邓丽君', 7, NULL"));
    song(QStringLiteral("1001, 'Yesterday', NULL, 1, 'old'"));
    song(QStringLiteral("1003, 'Not chosen', 'X', 3, NULL"));
    SongListRequest r = request({QStringLiteral("index"), QStringLiteral("title"), QStringLiteral("singer"),
                                 QStringLiteral("chars")},
                                {QStringLiteral("Number"), QStringLiteral("Title"), QStringLiteral("歌星"),
                                 QStringLiteral("Chars")});
    r.choice.conditions = {{QStringLiteral("index"), QStringLiteral("<"), QStringLiteral("1003")}};
    r.choice.orders = {QStringLiteral("index")};
    const SongList list = MakeSongList(*db, r, host);
    ASSERT_TRUE(list.written);
    EXPECT_EQ(cells(), (QStringList{QStringLiteral("A1=Number"), QStringLiteral("B1=Title"), QStringLiteral("C1=歌星"),
                                    QStringLiteral("D1=Chars"), QStringLiteral("A2=#1001"), QStringLiteral("B2=Yesterday"),
                                    QStringLiteral("C2="), QStringLiteral("D2=#1"), QStringLiteral("A3=#1002"),
                                    QStringLiteral("B3=月亮代表我的心"), QStringLiteral("C3=邓丽君"), QStringLiteral("D3=#7")}));
    EXPECT_EQ(list.rows, (QList<QStringList>{{QStringLiteral("1001"), QStringLiteral("Yesterday"), QString(), QStringLiteral("1")},
                                             {QStringLiteral("1002"), QStringLiteral("月亮代表我的心"), QStringLiteral("邓丽君"),
                                              QStringLiteral("7")}}));
    EXPECT_TRUE(host.events.contains(QStringLiteral("ask 2 song(s) will be printed, continue?")));
    EXPECT_TRUE(part(QStringLiteral("xl/workbook.xml")).contains(QStringLiteral("name=\"Sheet1\"")));
}

TEST_F(SongListTest, TemplateLaysOutTheSheet)
{
    QFile f(templateFile);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    f.write("[Page]\nPaper=A3\nOrientation=Landscape\nMarginLeft=25.4\nHeader=&LVenue &&Co\nFooter=&RPage &P\n"
            "[Font]\nName=AR PL UMing\nSize=14\n[Columns]\nDefault=7\ntitle=50\n");
    f.close();
    song(QStringLiteral("1, 'a', 'b', 1, NULL"));
    ASSERT_TRUE(MakeSongList(*db, request({QStringLiteral("index"), QStringLiteral("title")}, {QStringLiteral("N"), QStringLiteral("T")}), host)
                    .written);
    const QString sheet = part(QStringLiteral("xl/worksheets/sheet1.xml"));
    EXPECT_TRUE(sheet.contains(QStringLiteral("<col min=\"1\" max=\"1\" width=\"7.7109375\"")));
    EXPECT_TRUE(sheet.contains(QStringLiteral("<col min=\"2\" max=\"2\" width=\"50.7109375\"")));
    EXPECT_TRUE(sheet.contains(QStringLiteral("paperSize=\"8\"")));
    EXPECT_TRUE(sheet.contains(QStringLiteral("orientation=\"landscape\"")));
    EXPECT_TRUE(sheet.contains(QStringLiteral("left=\"1\"")));
    EXPECT_TRUE(sheet.contains(QStringLiteral("<oddHeader>&amp;LVenue &amp;&amp;Co</oddHeader>")));
    EXPECT_TRUE(sheet.contains(QStringLiteral("<oddFooter>&amp;RPage &amp;P</oddFooter>")));
    const QString styles = part(QStringLiteral("xl/styles.xml"));
    EXPECT_TRUE(styles.contains(QStringLiteral("<sz val=\"14\"/>")));
    EXPECT_TRUE(styles.contains(QStringLiteral("<name val=\"AR PL UMing\"/>")));
    EXPECT_TRUE(part(QStringLiteral("xl/workbook.xml")).contains(QStringLiteral("_xlnm.Print_Titles")));
}

TEST_F(SongListTest, CancelKeepsTheRowsWrittenSoFar)
{
    for (int i = 0; i < 5; ++i)
        song(QStringLiteral("%1, 't', 's', 1, NULL").arg(100 + i));
    host.cancelAt = 2;
    host.answers = {MsgAnswer::Yes, MsgAnswer::Yes};
    SongListRequest r = request({QStringLiteral("index")}, {QStringLiteral("N")});
    r.choice.orders = {QStringLiteral("index")};
    const SongList list = MakeSongList(*db, r, host);
    EXPECT_TRUE(list.written);
    EXPECT_EQ(cells(), (QStringList{QStringLiteral("A1=N"), QStringLiteral("A2=#100"), QStringLiteral("A3=#101")}));
}

TEST_F(SongListTest, FailuresBeforeTheWorkbookSayWhyAndWriteNothing)
{
    song(QStringLiteral("1, 'a', 'b', 1, NULL"));
    struct Case {
        const char* name;
        PrintChoice choice;
        bool dropTemplate;
        QString message;
    };
    const Case cases[] = {
        {"no field", {{}, {}, {}}, false, QStringLiteral("fail PreviewSonglist failed!")},
        {"apostrophe", {{QStringLiteral("title")}, {{QStringLiteral("singer"), QStringLiteral("="), QStringLiteral("O'Neil")}}, {}},
         false, QStringLiteral("fail PreviewSonglist failed!")},
        {"no song", {{QStringLiteral("title")}, {{QStringLiteral("index"), QStringLiteral(">"), QStringLiteral("5")}}, {}},
         false, QStringLiteral("info There isn't any song be selected!")},
        {"no template", {{QStringLiteral("title")}, {}, {}}, true,
         QStringLiteral("fail Can't find file - <") + templateFile + u'>'},
    };
    for (const Case& c : cases) {
        CheckHost h;
        if (c.dropTemplate)
            QFile::remove(templateFile);
        SongListRequest r = request(c.choice.fields, c.choice.fields);
        r.choice = c.choice;
        EXPECT_FALSE(MakeSongList(*db, r, h).written) << c.name;
        EXPECT_EQ(h.messages(), QStringList{c.message}) << c.name;
        EXPECT_FALSE(QFile::exists(r.workbook)) << c.name;
    }
}

TEST(PageBand, ExpandsTheSpreadsheetCodes)
{
    const PageBand band = ExpandPageBand(QStringLiteral("&L&\"Arial,Bold\"&14Songs &A&CPage &P of &N&R&&"), 2, 7,
                                         QStringLiteral("Sheet1"));
    EXPECT_EQ(band.left, QStringLiteral("Songs Sheet1"));
    EXPECT_EQ(band.centre, QStringLiteral("Page 2 of 7"));
    EXPECT_EQ(band.right, QStringLiteral("&"));
}

// A thousand songs with Chinese titles on A4: page numbers in the footer, every page rendered, the CJK
// font embedded. The first page is kept in the build directory to be looked at.
TEST_F(SongListTest, LongListMakesNumberedPagesWithAChineseFont)
{
    const QString pdftoppm = QStandardPaths::findExecutable(QStringLiteral("pdftoppm"));
    if (pdftoppm.isEmpty())
        GTEST_SKIP() << "pdftoppm is not installed";
    td::test::EnsureQtApp();
    QList<QStringList> rows;
    for (int i = 0; i < 1000; ++i)
        rows << QStringList{QString::number(100000 + i), QStringLiteral("月亮代表我的心 第%1首 A rather long English title").arg(i),
                            QStringLiteral("邓丽君"), QStringLiteral("Mandarin")};
    const SongListLayout layout = ReadSongListLayout(templateFile);
    const QString pdf = tmp.filePath(QStringLiteral("list.pdf"));
    ASSERT_TRUE(WriteSongListPdf(pdf, layout, {QStringLiteral("Number"), QStringLiteral("Title"), QStringLiteral("Singer"),
                                                QStringLiteral("Language")},
                                 rows, {QStringLiteral("index"), QStringLiteral("title"), QStringLiteral("singer"),
                                        QStringLiteral("language")}));
    QProcess info;
    info.start(QStringLiteral("pdfinfo"), {pdf});
    info.waitForFinished();
    const QString infoText = QString::fromUtf8(info.readAllStandardOutput());
    const auto pages = QRegularExpression(QStringLiteral("Pages:\\s+(\\d+)")).match(infoText).captured(1).toInt();
    EXPECT_GE(pages, 15);
    EXPECT_LE(pages, 30);
    QProcess fonts;
    fonts.start(QStringLiteral("pdffonts"), {pdf});
    fonts.waitForFinished();
    EXPECT_TRUE(QString::fromUtf8(fonts.readAllStandardOutput()).contains(QStringLiteral("WenQuanYi")));
    QProcess text;
    text.start(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), pdf, QStringLiteral("-")});
    text.waitForFinished();
    const QString all = QString::fromUtf8(text.readAllStandardOutput());
    EXPECT_TRUE(all.contains(QStringLiteral("Page %1 of %1").arg(pages)));
    EXPECT_TRUE(all.contains(QStringLiteral("月亮代表我的心 第999首")));
    const QString png = QStringLiteral(TUNEDESK_BINARY_DIR "/songlist-page");
    EXPECT_EQ(QProcess::execute(pdftoppm, {QStringLiteral("-r"), QStringLiteral("50"), QStringLiteral("-png"),
                                           QStringLiteral("-f"), QStringLiteral("1"), QStringLiteral("-l"),
                                           QStringLiteral("1"), pdf, png}),
              0);
}

}  // namespace
