#include "exchange/frmExportBook.h"
#include "controls/JobRunner.h"
#include "exchange/SongbookExport.h"
#include "regions/WindowText.h"
#include "shell/services/AppError.h"
#include "shell/services/Dialogs.h"
#include "shell/services/Translate.h"
#include "songdb/Connection.h"
#include "songdb/SongSession.h"
#include <QBoxLayout>
#include <QCloseEvent>
#include <QEventLoop>
#include <QLabel>
#include <QMdiSubWindow>
#include <QPushButton>

namespace td {

void RunBookJob(QWidget* window, const std::function<void(Connection&, JobHost&)>& job)
{
    const QString database = SongDatabaseFile();
    JobRunner runner(window);
    QEventLoop loop;
    QObject::connect(&runner, &JobRunner::Finished, &loop, &QEventLoop::quit);
    const bool started = runner.start([database, job](JobHost& host) {
        std::unique_ptr<Connection> db;
        try {
            db = OpenConnection(database);
        } catch (const std::exception& e) {
            host.Fail(ErrorText(e));
            return;
        }
        job(*db, host);
    });
    if (started)
        loop.exec();
}

frmExportBook::frmExportBook(WindowFrame& frame, QWidget* parent) : QWidget(parent), frame_(frame)
{
    setObjectName(QStringLiteral("frmExportBook"));
    setWindowTitle(QStringLiteral("Songbook export wizard"));
    lblFrom_ = new QLabel(this);
    lblFrom_->setObjectName(QStringLiteral("lblFrom"));
    lblTo_ = new QLabel(this);
    lblTo_->setObjectName(QStringLiteral("lblTo"));
    for (QLabel* l : {lblFrom_, lblTo_})
        l->setTextInteractionFlags(Qt::TextSelectableByMouse);
    cmdExport_ = new QPushButton(QStringLiteral("Start (&S)"), this);
    cmdExport_->setObjectName(QStringLiteral("cmdExport"));
    cmdClose_ = new QPushButton(QStringLiteral("Close (&C)"), this);
    cmdClose_->setObjectName(QStringLiteral("cmdClose"));
    connect(cmdExport_, &QPushButton::clicked, this, [this] { startExport(); });
    connect(cmdClose_, &QPushButton::clicked, this, [this] { CloseBookWindow(this); });

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdExport_);
    buttons->addWidget(cmdClose_);
    auto* page = new QVBoxLayout(this);
    page->addWidget(lblFrom_);
    page->addWidget(lblTo_);
    page->addStretch(1);
    page->addLayout(buttons);

    ExportWindowText(this);
    ApplyWindowText(this);
    const QString database = SongDatabaseFile();
    target_ = DefaultExportTarget(database);
    lblFrom_->setText(TranslateText(QStringLiteral("Source")) + QStringLiteral(" - ") + database);
    lblTo_->setText(TranslateText(QStringLiteral("Destination")) + QStringLiteral(" - ") + target_);
    resize(560, 160);
}

void frmExportBook::startExport()
{
    if (!SongDatabaseOpen()) {
        MsgInfo(TranslateText(QStringLiteral("Please login first")));
        CloseBookWindow(this);
        return;
    }
    const QString database = SongDatabaseFile();
    const QString target = target_;
    RunBookJob(this, [database, target](Connection& db, JobHost& host) {
        ExportSongbook(db, database, target, host);
    });
    CloseBookWindow(this);
}

void CloseBookWindow(QWidget* window)
{
    if (auto* sub = qobject_cast<QMdiSubWindow*>(window->parentWidget()))
        sub->close();
    else
        window->close();
}

void frmExportBook::closeEvent(QCloseEvent* event)
{
    QWidget::closeEvent(event);
    frame_.windowClosed();
}

}  // namespace td
