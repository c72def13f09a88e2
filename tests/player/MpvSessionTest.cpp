// The core's own deadline for opening: a file whose opening never finishes (a pipe nobody writes to)
// is given up on in time, and the core takes the next file afterwards.
#include "support/TheatreMedia.h"
#include "controls/MpvSession.h"
#include "support/QtApp.h"
#include "support/TempAppDir.h"
#include <QElapsedTimer>
#include <QFile>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace td;

namespace {

TEST(MpvSessionTest, OpeningThatNeverFinishesIsGivenUpAtTheDeadline)
{
    test::EnsureQtApp();
    const test::TheatreMedia& media = test::TheatreMedia::Get();
    if (!media.ready())
        GTEST_SKIP() << media.error().toStdString();
    test::TempAppDir appDir;
    const QString pipe = appDir.file(QStringLiteral("stuck.mpg"));
    ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);

    MpvSession session({QStringLiteral("null"), QStringLiteral("null"), {}});
    ASSERT_TRUE(session.valid());
    QElapsedTimer clock;
    clock.start();
    EXPECT_FALSE(session.load(pipe, 400));
    EXPECT_GE(clock.elapsed(), 350) << "the pipe did not hold the opening";
    EXPECT_LT(clock.elapsed(), 1000);
    EXPECT_FALSE(session.loaded());

    // Should the core still wait on the pipe, a writer that comes and goes ends its wait.
    const int writer = open(QFile::encodeName(pipe).constData(), O_WRONLY | O_NONBLOCK);
    if (writer >= 0)
        close(writer);

    EXPECT_TRUE(session.load(media.file(QStringLiteral("clip.mpg")), 4000));
    EXPECT_TRUE(session.hasVideo());
}

}  // namespace
