// Alt and a letter, pressed as the operator presses it: a menu of the menu bar wins over a button of the
// songbook with the same letter; a button whose letter no menu claims keeps it.
#include "SongbookFixture.h"
#include "shell/mdiMain.h"
#include "songbook/frmSong.h"
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

using namespace td;

namespace {

class SongbookAccessKeys : public test::SongbookFixture {
protected:
    void SetUp() override
    {
        // The shipped English texts, so that menus and buttons carry their access keys.
        QDir().mkpath(dir.file(QStringLiteral("Region/English")));
        QFile::copy(QStringLiteral(TUNEDESK_SOURCE_DIR "/data/Region/English/string.txt"),
                    dir.file(QStringLiteral("Region/English/string.txt")));
        openSongbook();
        frame->show();
        QApplication::setActiveWindow(frame.get());
        ASSERT_TRUE(QTest::qWaitForWindowActive(frame.get()));
    }
    QPushButton* button(const QString& caption) const
    {
        for (QPushButton* b : song->findChildren<QPushButton*>())
            if (b->text() == caption && b->isVisible())
                return b;
        return nullptr;
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QWidget* target = QApplication::focusWidget() ? QApplication::focusWidget() : frame.get();
        QTest::keyClick(target, key, modifiers);
    }
};

TEST_F(SongbookAccessKeys, AltSOpensTheServerMenuOverTheSaveButtonAndEReachesExit)
{
    QPushButton* save = button(QStringLiteral("Save (&S)"));
    ASSERT_NE(save, nullptr);
    QAction* exit = frame->menuAction(QStringLiteral("mnuExit"));
    QObject::disconnect(exit, &QAction::triggered, frame.get(), nullptr);  // the test goes on running
    QSignalSpy exitChosen(exit, &QAction::triggered);
    QSignalSpy saved(save, &QPushButton::clicked);

    press(Qt::Key_S, Qt::AltModifier);
    QMenu* server = frame->menu(QStringLiteral("mnuServer"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return server->isVisible(); }, 2000));
    EXPECT_FALSE(save->hasFocus());
    QTest::keyClick(server, Qt::Key_E);
    EXPECT_EQ(exitChosen.count(), 1);
    EXPECT_EQ(saved.count(), 0);
}

TEST_F(SongbookAccessKeys, AButtonKeepsALetterNoMenuClaims)
{
    QPushButton* refresh = button(QStringLiteral("Refresh (&R)"));
    ASSERT_NE(refresh, nullptr);
    QSignalSpy clicked(refresh, &QPushButton::clicked);
    press(Qt::Key_R, Qt::AltModifier);
    EXPECT_TRUE(clicked.wait(2000));
    for (QMenu* m : frame->findChildren<QMenu*>())
        EXPECT_FALSE(m->isVisible()) << m->objectName().toStdString();
}

}  // namespace
