#include "config/frmDatabase.h"
#include "config/frmSystemConfig.h"
#include "regions/WindowText.h"
#include "shell/services/AppPaths.h"
#include "shell/services/Dialogs.h"
#include "shell/services/Ini.h"
#include "shell/services/Translate.h"
#include "songdb/SongSession.h"
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace td {
namespace {

struct BrowseText {
    const char *dbType, *title, *filter;
};

const BrowseText kBrowseTexts[] = {
    {"RoomServer", "Select database file for room server",
     "Room Server (roomXXX.db)|room*.db|Other database file (*.*)|*.*"},
    {"SongServer", "Select database file for song server",
     "Song Server (songXXX.db)|song*.db|Other database file (*.*)|*.*"},
    {"ServiceServer", "Select database file for service server",
     "Service Server (serviceXXX.db)|service*.db|Other database file (*.*)|*.*"},
};

}  // namespace

QString DefaultServerName(const QString& dbType, QString& name, bool write)
{
    const QString file = AppPath() + QStringLiteral("/KtvPublic/server.ini");
    if (!write)
        return IniRead(file, dbType, QStringLiteral("DefaultServer"), QString());
    return IniWrite(file, dbType, QStringLiteral("DefaultServer"), name) ? name : QString();
}

frmDatabase::frmDatabase(WindowFrame& frame) : QDialog(frame.dialogOwner())
{
    setObjectName(QStringLiteral("frmDatabase"));
    setWindowTitle(QStringLiteral("Database configuration - <productname>"));
    setModal(true);

    fraLocal_ = new QGroupBox(QStringLiteral("Select local database (&S)"), this);
    fraLocal_->setObjectName(QStringLiteral("fraLocal"));
    txtLocal_ = new QLineEdit(fraLocal_);
    txtLocal_->setObjectName(QStringLiteral("txtLocal"));
    txtLocal_->setMinimumWidth(420);
    // A database server is named by its address in the same box as a file.
    txtLocal_->setPlaceholderText(QStringLiteral("song.db  |  postgresql://user@host:port/dbname"));
    cmdBrowse_ = new QPushButton(QStringLiteral("Browse ... (&B)"), fraLocal_);
    cmdBrowse_->setObjectName(QStringLiteral("cmdBrowse"));
    auto* localRow = new QHBoxLayout(fraLocal_);
    localRow->addWidget(txtLocal_, 1);
    localRow->addWidget(cmdBrowse_);

    fraServer_ = new QGroupBox(QStringLiteral("Select server (&S)"), this);
    fraServer_->setObjectName(QStringLiteral("fraServer"));
    lsvServer_ = new QTreeWidget(fraServer_);
    lsvServer_->setObjectName(QStringLiteral("lsvServer"));
    lsvServer_->setHeaderLabels({QStringLiteral("Host"), QStringLiteral("Server")});
    lsvServer_->setRootIsDecorated(false);
    (new QVBoxLayout(fraServer_))->addWidget(lsvServer_);

    cmdOpen_ = new QPushButton(QStringLiteral("Open (&O)"), this);
    cmdOpen_->setObjectName(QStringLiteral("cmdOpen"));
    cmdOpen_->setDefault(true);
    cmdCancel_ = new QPushButton(QStringLiteral("Cancel (&C)"), this);
    cmdCancel_->setObjectName(QStringLiteral("cmdCancel"));
    cmdSystem_ = new QPushButton(QStringLiteral("System (&S)"), this);
    cmdSystem_->setObjectName(QStringLiteral("cmdSystem"));
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdSystem_);
    buttons->addStretch(1);
    buttons->addWidget(cmdOpen_);
    buttons->addWidget(cmdCancel_);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(fraLocal_);
    layout->addWidget(fraServer_);
    layout->addStretch(1);
    layout->addLayout(buttons);

    // The box's tip always repeats its text, so a long path can be read whole.
    connect(txtLocal_, &QLineEdit::textChanged, txtLocal_, &QLineEdit::setToolTip);
    connect(cmdBrowse_, &QPushButton::clicked, this, &frmDatabase::browse);
    connect(cmdOpen_, &QPushButton::clicked, this, &frmDatabase::open);
    connect(cmdCancel_, &QPushButton::clicked, this, &frmDatabase::cancel);
    // The button stays hidden; the system wizard stands ready behind it.
    connect(cmdSystem_, &QPushButton::clicked, this, [this] {
        OwnerFrame owner(this);
        frmSystemConfig(owner).exec();
    });
    ExportWindowText(this);
    ApplyWindowText(this);
    layoutWindow();
}

void frmDatabase::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    if (!laidOut_)
        layoutWindow();
}

void frmDatabase::layoutWindow()
{
    fraLocal_->setVisible(true);
    fraServer_->setVisible(false);
    QString path;
    txtLocal_->setText(DatabaseHomePath(DBType, path, false));
    cmdSystem_->setVisible(false);
    laidOut_ = isVisible();
    adjustSize();
}

void frmDatabase::browse()
{
    OpenFileRequest request;
    for (const BrowseText& t : kBrowseTexts) {
        if (DBType == QLatin1String(t.dbType)) {
            request.title = QString::fromLatin1(t.title);
            request.filter = QString::fromLatin1(t.filter);
        }
    }
    const QStringList chosen = Dialogs().openFiles(request);
    if (!chosen.isEmpty())
        dialogFile_ = chosen.first();
    // A cancelled dialog still hands over what it held before.
    txtLocal_->setText(dialogFile_);
}

void frmDatabase::open()
{
    if (fraLocal_->isVisibleTo(this)) {
        QString path = txtLocal_->text();
        DatabaseHomePath(DBType, path, true);
    } else if (fraServer_->isVisibleTo(this)) {
        QTreeWidgetItem* row = lsvServer_->currentItem();
        if (!row || !row->isSelected()) {
            MsgInfo(TranslateText(QStringLiteral("Choose a server to open")));
            return;
        }
        QString name = row->text(1);
        DefaultServerName(DBType, name, true);
    }
    Ok = true;
    accept();
}

void frmDatabase::cancel()
{
    Ok = false;
    reject();
}

}  // namespace td
