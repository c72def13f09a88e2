// The booklet as a PDF: what the layout placed on a page is what the page shows, in a CJK font that is
// embedded; the job reads the songs of the available or of a chosen region and leaves no file when
// cancelled.
#include "booklet/Booklet.h"
#include "exchange/ExchangeTestSupport.h"
#include "songdb/Connection.h"
#include "songdb/DemoSongbook.h"
#include "support/QtApp.h"
#include "support/QtPrint.h"
#include <QFile>
#include <QPdfWriter>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace td;

namespace {

QString run(const QString& program, const QStringList& args)
{
    QProcess p;
    p.start(program, args);
    p.waitForFinished(60000);
    return QString::fromUtf8(p.readAllStandardOutput());
}

// The number of pages pdfinfo reads in the file, -1 when it reads none.
int pageCount(const QString& pdf)
{
    static const QRegularExpression pages(QStringLiteral("Pages:\\s+(\\d+)"));
    const QRegularExpressionMatch m = pages.match(run(QStringLiteral("pdfinfo"), {pdf}));
    return m.hasMatch() ? m.captured(1).toInt() : -1;
}

QString pageText(const QString& pdf, int page)
{
    const QString n = QString::number(page);
    return run(QStringLiteral("pdftotext"), {QStringLiteral("-f"), n, QStringLiteral("-l"), n,
                                             QStringLiteral("-layout"), pdf, QStringLiteral("-")});
}

class BookletPdfTest : public testing::Test {
protected:
    void SetUp() override
    {
        test::EnsureQtApp();
        if (QStandardPaths::findExecutable(QStringLiteral("pdftotext")).isEmpty())
            GTEST_SKIP() << "poppler-utils are not installed";
    }
    QTemporaryDir tmp;
};

// Songs of 40 singers, Simplified and Traditional titles, numbered from 10001.
QList<BookletSong> songsOfForty()
{
    const QString hanzi =
        QString::fromUtf8("爱的代价光阴故事童年恋曲月亮代表我心甜蜜小城朋友大海聽海鄧麗君張學友");
    QList<BookletSong> songs;
    for (int i = 0; i < 400; ++i) {
        QString title;
        for (int k = 0; k < 2 + i % 5; ++k)
            title += hanzi[(i * 7 + k * 3) % hanzi.size()];
        songs.append({10001 + i, title, hanzi.mid(i % 40 % 20, 2) + QString::number(i % 40), {}, 0});
    }
    return songs;
}

TEST_F(BookletPdfTest, EachPageShowsTheSongsTheLayoutPutThere)
{
    BookletOptions options;
    options.columns = 3;
    options.venue = QStringLiteral("Golden Voice KTV");
    options.date = QDate(2026, 11, 24);
    const QList<BookletSection> sections = GroupBookletSongs(songsOfForty(), options.group);
    const QString pdf = tmp.filePath(QStringLiteral("booklet.pdf"));
    ASSERT_TRUE(WriteBookletPdf(pdf, options, sections));

    QPdfWriter probe(tmp.filePath(QStringLiteral("probe.pdf")));
    probe.setResolution(300);
    ApplyBookletPage(probe, options.paper);
    const QList<BookletPage> pages = LayOutBooklet(sections, MeasureBooklet(probe, options));
    ASSERT_GE(pages.size(), 2);
    EXPECT_EQ(pageCount(pdf), pages.size());

    for (int p = 0; p < pages.size(); ++p) {
        const QString text = pageText(pdf, p + 1);
        EXPECT_TRUE(text.contains(QStringLiteral("Golden Voice KTV"))) << "page " << p + 1;
        EXPECT_TRUE(text.contains(QStringLiteral("2026-11-24")));
        EXPECT_TRUE(text.contains(
            QRegularExpression(QStringLiteral("\\b%1\\s*/\\s*%2\\b").arg(p + 1).arg(pages.size()))));
        for (const BookletColumn& column : pages[p].columns)
            for (const BookletLine& line : column) {
                if (line.kind != BookletLine::Song)
                    continue;
                const BookletSong& song = sections[line.section].songs[line.song];
                const QRegularExpression entry(QString::number(song.index) + QStringLiteral("\\s+") +
                                               song.title);
                EXPECT_TRUE(text.contains(entry)) << "page " << p + 1 << ": " << song.index;
            }
        if (pages[p].columns.size() > 1 && pages[p].columns[1].first().kind == BookletLine::Continued) {
            EXPECT_TRUE(text.contains(QStringLiteral("(continued)")));
        }
    }
    // The Chinese font goes into the file: the titles print on any printer, without boxes.
    const QString fonts = run(QStringLiteral("pdffonts"), {pdf});
    EXPECT_TRUE(
        fonts.contains(QRegularExpression(QStringLiteral("WenQuanYi\\S*\\s+CID TrueType\\s+\\S+\\s+yes"))))
        << fonts.toStdString();
}

TEST_F(BookletPdfTest, LetterPagesAndFourColumnsHoldMoreSongsAPageThanTwo)
{
    BookletOptions wide;
    wide.columns = 4;
    wide.paper = QStringLiteral("Letter");
    BookletOptions narrow = wide;
    narrow.columns = 2;
    QPdfWriter probe(tmp.filePath(QStringLiteral("probe.pdf")));
    probe.setResolution(300);
    ApplyBookletPage(probe, wide.paper);
    EXPECT_NEAR(probe.pageLayout().fullRect(QPageLayout::Inch).width(), 8.5, 0.01);
    const BookletFrame four = MeasureBooklet(probe, wide);
    const BookletFrame two = MeasureBooklet(probe, narrow);
    EXPECT_EQ(four.columns, 4);
    EXPECT_EQ(two.columns, 2);
    EXPECT_EQ(four.lines, two.lines);
    EXPECT_GT(four.lines, 40);  // 9-point lines on a Letter page
}

class BookletJobTest : public BookletPdfTest {
protected:
    void SetUp() override
    {
        BookletPdfTest::SetUp();
        if (IsSkipped())
            return;
        DemoOptions demo;
        demo.songs = 300;
        demo.media = false;
        db = OpenConnection(CreateDemoSongbook(tmp.path(), demo));
    }
    qint64 count(const QString& where)
    {
        return db->openRecordset(QStringLiteral("select count(*) from song where ") + where)
            ->value(0, 0)
            .toLongLong();
    }
    std::unique_ptr<Connection> db;
};

TEST_F(BookletJobTest, ListsTheSongsOfTheAvailableRegionsOrOfTheChosenOne)
{
    db->execute(QStringLiteral("delete from region where name = 'Chinese(Taiwan)'"));
    const qint64 available = count(QStringLiteral("region in (select name from region) or region is null"));
    ASSERT_LT(available, count(QStringLiteral("1=1")));
    EXPECT_EQ(ReadBookletSongs(*db, {}).size(), available);
    EXPECT_EQ(ReadBookletSongs(*db, QStringLiteral("Chinese(Taiwan)")).size(),
              count(QStringLiteral("region = 'Chinese(Taiwan)'")));
    EXPECT_TRUE(ReadBookletSongs(*db, QStringLiteral("Nobody's")).isEmpty());

    test::RecordingHost host;
    BookletOptions options;
    options.group = BookletGroup::Language;
    const QString pdf = tmp.filePath(QStringLiteral("demo.pdf"));
    const BookletOutcome out = MakeBookletPdf(*db, options, pdf, host);
    EXPECT_TRUE(out.written);
    EXPECT_EQ(out.songs, available);
    EXPECT_GE(out.pages, 1);
    EXPECT_EQ(host.progress, out.pages);
    EXPECT_EQ(pageCount(pdf), out.pages);
}

TEST_F(BookletJobTest, ACancelLeavesNoFile)
{
    test::RecordingHost host;
    host.cancelAt = 1;
    host.answers = {MsgAnswer::Yes};  // "Do you want to cancel the process?"
    const QString pdf = tmp.filePath(QStringLiteral("cancelled.pdf"));
    const BookletOutcome out = MakeBookletPdf(*db, BookletOptions{}, pdf, host);
    EXPECT_FALSE(out.written);
    EXPECT_FALSE(QFile::exists(pdf));
    EXPECT_TRUE(host.events.filter(QRegularExpression(QStringLiteral("^(info|fail) "))).isEmpty())
        << host.events.join(u'\n').toStdString();
}

TEST_F(BookletJobTest, AFileThatCannotBeWrittenIsReported)
{
    test::RecordingHost host;
    const QString pdf = tmp.filePath(QStringLiteral("no/such/dir/b.pdf"));
    EXPECT_FALSE(MakeBookletPdf(*db, BookletOptions{}, pdf, host).written);
    EXPECT_EQ(host.last(), QStringLiteral("fail Can't write file - <") + pdf + u'>');
}

}  // namespace
