#include "checks/frmCheckBook.h"
#include "checks/SongbookCheck.h"
#include "checks/WindowJob.h"
#include "regions/WindowText.h"
#include "shell/services/AppError.h"
#include "shell/services/AppPaths.h"
#include "shell/services/Dialogs.h"
#include "shell/services/Shell.h"
#include "shell/services/Translate.h"
#include "songdb/Connection.h"
#include "songdb/SongSession.h"
#include <QApplication>
#include <QCloseEvent>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

namespace td {

frmCheckBook::frmCheckBook(WindowFrame& frame, QWidget* parent) : QWidget(parent), frame_(frame)
{
    setObjectName(QStringLiteral("frmCheckBook"));
    setWindowTitle(QStringLiteral("Check songbook"));
    auto* grid = new QGridLayout(this);
    grid->setHorizontalSpacing(16);
    grid->setVerticalSpacing(10);
    cmdLibrary_ = addRow("cmdLibrary", "Check libraries (&L)", "Check if all libraries are available", 0);
    cmdSong_ = addRow("cmdSong", "Check songs (&C)", "Check if all songs can be played", 1);
    cmdAddMedia_ =
        addRow("cmdAddMedia", "Search media (&S)", "Search isolated media files to add to songbook", 2);
    cmdDeleteMedia_ =
        addRow("cmdDeleteMedia", "Delete media (&D)", "Delete isolated media files from harddisk", 3);
    cmdClose_ = new QPushButton(QStringLiteral("Close (&C)"), this);
    cmdClose_->setObjectName(QStringLiteral("cmdClose"));
    grid->setRowMinimumHeight(4, 8);
    grid->addWidget(cmdClose_, 5, 0);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(6, 1);

    connect(cmdLibrary_, &QPushButton::clicked, this,
            [this] { run([](Connection& db, const CheckSettings& s, JobHost& h) { CheckLibraries(db, s, h); }, false); });
    connect(cmdSong_, &QPushButton::clicked, this,
            [this] { run([](Connection& db, const CheckSettings& s, JobHost& h) { CheckSongs(db, s, h); }, false); });
    connect(cmdAddMedia_, &QPushButton::clicked, this, [this] {
        run([](Connection& db, const CheckSettings& s, JobHost& h) { AddIsolatedMedias(db, s, h); }, true);
    });
    connect(cmdDeleteMedia_, &QPushButton::clicked, this, [this] {
        run([](Connection& db, const CheckSettings& s, JobHost& h) { DeleteIsolatedMedias(db, s, h); }, true);
    });
    connect(cmdClose_, &QPushButton::clicked, this, [this] { CloseWorkingWindow(this); });
    ExportWindowText(this);
    ApplyWindowText(this);
}

QPushButton* frmCheckBook::addRow(const char* name, const char* caption, const char* label, int row)
{
    auto* grid = static_cast<QGridLayout*>(layout());
    auto* button = new QPushButton(QString::fromUtf8(caption), this);
    button->setObjectName(QString::fromLatin1(name));
    button->setMinimumWidth(150);
    auto* text = new QLabel(QString::fromUtf8(label), this);
    text->setObjectName(QStringLiteral("lbl") + QString::fromLatin1(name).mid(3));
    grid->addWidget(button, row, 0);
    grid->addWidget(text, row, 1);
    return button;
}

void frmCheckBook::run(const Check& check, bool needsLogin)
{
    if (needsLogin && !SongDatabaseOpen()) {
        MsgInfo(TranslateText(QStringLiteral("Please login first")));
        return;
    }
    const QString database = SongDatabaseFile();
    // The job calls this on its own thread; a message about it waits for the interface thread.
    CheckSettings settings{AppPath(), [](const QString& report) {
                               if (!Shell().edit(report))
                                   QMetaObject::invokeMethod(qApp, [report] { SayNoProgramStarted(report); });
                           }};
    RunWindowJob(this, [check, settings, database](JobHost& host) {
        std::unique_ptr<Connection> db;
        try {
            db = OpenConnection(database);
        } catch (const std::exception& e) {
            host.Fail(QStringLiteral("Open songbook failed!") + ErrSuffix(e));
            return;
        }
        check(*db, settings, host);
    });
}

void frmCheckBook::closeEvent(QCloseEvent* event)
{
    QWidget::closeEvent(event);
    frame_.windowClosed();
}

}  // namespace td
