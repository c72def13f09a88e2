#include "DiscImages.h"
#include "libraries/DiscIdentity.h"
#include "support/TempAppDir.h"
#include <QFile>
#include <QProcess>
#include <gtest/gtest.h>

namespace td::test {
namespace {

// A descriptor of 2,048 bytes with the given bytes set at their offsets, the rest zero.
QByteArray descriptorWith(std::initializer_list<std::pair<int, quint8>> bytes)
{
    QByteArray d(int(kDiscSectorSize), '\0');
    for (auto [at, value] : bytes)
        d[at] = char(value);
    return d;
}

// An image of 17 sectors whose sector 16 is the descriptor.
QString writeImage(const QString& path, const QByteArray& descriptor)
{
    QFile f(path);
    f.open(QIODevice::WriteOnly);
    f.write(QByteArray(int(kPrimaryDescriptorSector * kDiscSectorSize), '\0'));
    f.write(descriptor);
    return path;
}

// Type 1, "CD001", version 1, and the volume name "VCD" at offset 40, byte by byte.
QByteArray handMadeDescriptor()
{
    return descriptorWith({{0, 0x01},
                           {1, 'C'},
                           {2, 'D'},
                           {3, '0'},
                           {4, '0'},
                           {5, '1'},
                           {6, 0x01},
                           {40, 'V'},
                           {41, 'C'},
                           {42, 'D'}});
}

struct SerialCase {
    const char* what;
    QByteArray descriptor;
    const char* identity;
};

TEST(DiscIdentity, SumsEachFourthByteIntoItsOwnPlaceOfTheSerial)
{
    const SerialCase cases[] = {
        {"nothing set", descriptorWith({}), "0"},
        {"one byte in each place", descriptorWith({{0, 0x12}, {1, 0x34}, {2, 0x56}, {3, 0x78}}), "12345678"},
        {"later bytes join the sum of their place",
         descriptorWith({{2044, 0x10}, {2045, 0x20}, {2046, 0x30}, {2047, 0x40}, {8, 0x01}}), "11203040"},
        {"sums wrap at 256", descriptorWith({{0, 0xFF}, {4, 0x02}, {7, 0x80}, {11, 0x81}}), "1000001"},
        {"no leading zeros", descriptorWith({{2, 0x0A}, {3, 0x0B}}), "A0B"},
        {"upper-case letters", descriptorWith({{0, 0xAB}, {1, 0xCD}, {2, 0xEF}, {3, 0xFF}}), "ABCDEFFF"},
        // 01+30+'V'=87, 43+31+43=B7, 44+01+44=89, 30 by hand.
        {"a hand-made ISO 9660 descriptor", handMadeDescriptor(), "87B78930"},
    };
    for (const SerialCase& c : cases)
        EXPECT_EQ(DiscIdentityText(VolumeSerialOf(c.descriptor)), QString::fromLatin1(c.identity)) << c.what;
}

TEST(DiscIdentity, IsReadFromSectorSixteenOfTheDrivesSectors)
{
    TempAppDir dir;
    FakeDiscDrives drives;
    drives.insert(QStringLiteral("/media/cdrom"), dir.path(),
                  writeImage(dir.file(QStringLiteral("a.iso")), handMadeDescriptor()));
    QString identity, error;
    ASSERT_TRUE(DiscIdentityOf(QStringLiteral("/media/cdrom"), identity, error)) << error.toStdString();
    EXPECT_EQ(identity, QStringLiteral("87B78930"));
}

TEST(DiscIdentity, RefusesWhatIsNoIsoVolume)
{
    TempAppDir dir;
    QByteArray d;
    QString error;
    EXPECT_FALSE(ReadPrimaryDescriptor(dir.file(QStringLiteral("missing.iso")), d, error));
    EXPECT_FALSE(error.isEmpty());
    const QString shortFile = dir.write(QStringLiteral("short.iso"), QByteArray(4096, 'x'));
    EXPECT_FALSE(ReadPrimaryDescriptor(shortFile, d, error));
    QByteArray notIso = handMadeDescriptor();
    notIso[3] = 'X';
    EXPECT_FALSE(ReadPrimaryDescriptor(writeImage(dir.file(QStringLiteral("b.iso")), notIso), d, error));
    EXPECT_TRUE(error.contains(QStringLiteral("no ISO 9660"))) << error.toStdString();
}

class DiscImage : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (!CanMakeImages())
            GTEST_SKIP() << "xorriso is not installed";
    }
    QString videoCd(const QString& name, const QString& volume)
    {
        return MakeDiscImage(dir.file(name),
                             {{QStringLiteral("MPEGAV/AVSEQ02.DAT"), "second"},
                              {QStringLiteral("MPEGAV/AVSEQ01.DAT"), "first"},
                              {QStringLiteral("MPEGAV/INFO.TXT"), "no track"},
                              {QStringLiteral("VCD/INFO.VCD"), "vcd"}},
                             volume, dir.file(name + QStringLiteral(".iso")));
    }
    TempAppDir dir;
};

TEST_F(DiscImage, SameDiscGivesTheSameIdentityAndAnotherDiscAnother)
{
    const QString a = videoCd(QStringLiteral("a"), QStringLiteral("KARAOKE1"));
    const QString again = videoCd(QStringLiteral("again"), QStringLiteral("KARAOKE1"));
    const QString other = videoCd(QStringLiteral("other"), QStringLiteral("KARAOKE2"));
    ASSERT_FALSE(a.isEmpty());
    QString idA, idAgain, idOther, error;
    ASSERT_TRUE(DiscIdentityOf(a, idA, error)) << error.toStdString();
    ASSERT_TRUE(DiscIdentityOf(again, idAgain, error));
    ASSERT_TRUE(DiscIdentityOf(other, idOther, error));
    EXPECT_EQ(idA, idAgain);
    EXPECT_NE(idA, idOther);
    EXPECT_EQ(idA, idA.toUpper());
    EXPECT_FALSE(idA.startsWith(u'0'));
}

TEST_F(DiscImage, TracksAreReadFromTheImageWithoutMountingIt)
{
    const QString image = videoCd(QStringLiteral("a"), QStringLiteral("KARAOKE1"));
    QStringList tracks;
    QString error;
    ASSERT_TRUE(ImageTracks(image, tracks, error)) << error.toStdString();
    EXPECT_EQ(tracks,
              (QStringList{QStringLiteral("/MPEGAV/AVSEQ01.DAT"), QStringLiteral("/MPEGAV/AVSEQ02.DAT")}));

    const QString data =
        MakeDiscImage(dir.file(QStringLiteral("data")), {{QStringLiteral("DOCS/README.TXT"), "x"}},
                      QStringLiteral("DATA"), dir.file(QStringLiteral("data.iso")));
    tracks.clear();
    EXPECT_FALSE(ImageTracks(data, tracks, error));
    EXPECT_TRUE(error.contains(QStringLiteral("MPEGAV"))) << error.toStdString();
}

// tunedesk-admin disc, run as venue support runs it.
class AdminDisc : public DiscImage {
protected:
    int run(const QStringList& args, QStringList& out, QString& err)
    {
        QProcess p;
        p.start(QStringLiteral(TUNEDESK_BINARY_DIR "/tunedesk-admin"),
                QStringList{QStringLiteral("disc")} + args);
        p.waitForFinished(30000);
        out = QString::fromUtf8(p.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
        err = QString::fromUtf8(p.readAllStandardError());
        return p.exitCode();
    }
};

TEST_F(AdminDisc, PrintsTheIdentityAndThenTheTracks)
{
    const QString image = videoCd(QStringLiteral("a"), QStringLiteral("KARAOKE1"));
    QString identity, error;
    ASSERT_TRUE(DiscIdentityOf(image, identity, error));
    QStringList out;
    QString err;
    ASSERT_EQ(run({image}, out, err), 0) << err.toStdString();
    EXPECT_EQ(out, (QStringList{identity, QStringLiteral("/MPEGAV/AVSEQ01.DAT"),
                                QStringLiteral("/MPEGAV/AVSEQ02.DAT")}));
}

TEST_F(AdminDisc, BadInputIsOneLineAndExitTwo)
{
    const QString data =
        MakeDiscImage(dir.file(QStringLiteral("data")), {{QStringLiteral("DOCS/README.TXT"), "x"}},
                      QStringLiteral("DATA"), dir.file(QStringLiteral("data.iso")));
    const QString plain = dir.write(QStringLiteral("plain.bin"), QByteArray(40000, 'x'));
    const QStringList inputs[] = {{data}, {plain}, {dir.file(QStringLiteral("nothing.iso"))}, {}};
    for (const QStringList& args : inputs) {
        QStringList out;
        QString err;
        EXPECT_EQ(run(args, out, err), 2) << args.join(u' ').toStdString();
        EXPECT_EQ(err.trimmed().count(u'\n'), 0) << err.toStdString();
        EXPECT_FALSE(err.trimmed().isEmpty());
    }
}

}  // namespace
}  // namespace td::test
