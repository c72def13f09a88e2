#include "config/frmSystemConfig.h"
#include "config/frmDatabase.h"
#include "controls/OleColor.h"
#include "regions/WindowText.h"
#include "shell/services/AppPaths.h"
#include "shell/services/Dialogs.h"
#include "shell/services/FilePaths.h"
#include "shell/services/Translate.h"
#include <QButtonGroup>
#include <QEvent>
#include <QEventLoop>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace td {
namespace {

constexpr long kYellow = 65535;
constexpr long kGreen = 65280;
constexpr long kRed = 255;
constexpr long kSysWindow = long(qint32(0x80000005u));

QPushButton* makeButton(QWidget* parent, const QString& name, const char* caption)
{
    auto* b = new QPushButton(QString::fromUtf8(caption), parent);
    b->setObjectName(name);
    return b;
}

QLineEdit* makeBox(QWidget* parent, const QString& name)
{
    auto* box = new QLineEdit(parent);
    box->setObjectName(name);
    return box;
}

QTreeWidget* makeList(QWidget* parent, const char* name, const char* first, const char* second)
{
    auto* list = new QTreeWidget(parent);
    list->setObjectName(QString::fromLatin1(name));
    list->setRootIsDecorated(false);
    list->setHeaderLabels(
        {TranslateText(QString::fromLatin1(first)), TranslateText(QString::fromLatin1(second))});
    list->header()->setSectionResizeMode(QHeaderView::Stretch);
    list->setMinimumWidth(520);
    return list;
}

void paintBack(QWidget* w, QPalette::ColorRole role, long oleColor)
{
    QPalette p = w->palette();
    p.setColor(role, ColorFromOle(oleColor, QPalette()));
    w->setPalette(p);
}

QString indexed(const char* name, int i)
{
    return QString::fromLatin1(name) + u'_' + QString::number(i);
}

}  // namespace

QString& SystemUserLevel()
{
    static QString level;
    return level;
}

QString HostShare(const QString& host)
{
    return host.isEmpty() ? QString()
                          : NativePath(QStringLiteral("//") + host + QStringLiteral("/KtvPublic"));
}

frmSystemConfig::frmSystemConfig(WindowFrame& frame) : QDialog(frame.dialogOwner())
{
    setObjectName(QStringLiteral("frmSystemConfig"));
    setWindowTitle(QStringLiteral("System configuration"));
    setModal(true);

    fraMain_[0] = buildServerPage();
    fraMain_[1] = buildRoomPage();
    fraMain_[2] = buildSynPage();
    auto* pages = new QGridLayout;
    for (QWidget* f : fraMain_)
        pages->addWidget(f, 0, 0);

    cmdPrevious_ = makeButton(this, QStringLiteral("cmdPrevious"), "Previous (&P)");
    cmdNext_ = makeButton(this, QStringLiteral("cmdNext"), "Next (&N)");
    cmdClose_ = makeButton(this, QStringLiteral("cmdClose"), "Close (&C)");
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    for (QPushButton* b : {cmdPrevious_, cmdNext_, cmdClose_})
        buttons->addWidget(b);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(pages, 1);
    layout->addLayout(buttons);

    connect(cmdPrevious_, &QPushButton::clicked, this, &frmSystemConfig::previous);
    connect(cmdNext_, &QPushButton::clicked, this, &frmSystemConfig::next);
    connect(cmdClose_, &QPushButton::clicked, this, &QDialog::reject);

    ExportWindowText(this);
    ApplyWindowText(this);
    ServerClass = QStringLiteral("SongServer");
    page_ = 0;
    ShowConfigPage();
}

QWidget* frmSystemConfig::buildServerPage()
{
    auto* f = new QGroupBox(QStringLiteral("Servers"), this);
    f->setObjectName(indexed("fraMain", 0));
    auto* grid = new QGridLayout(f);
    auto* head = new QLabel(QStringLiteral("Default server, server name or ip address"), f);
    head->setObjectName(QStringLiteral("lblServerHead"));
    grid->addWidget(head, 0, 0, 1, 4);
    auto* group = new QButtonGroup(f);
    for (int i = 1; i <= 4; ++i) {
        optServer_[i - 1] = new QRadioButton(f);
        optServer_[i - 1]->setObjectName(indexed("optServer", i));
        group->addButton(optServer_[i - 1]);
        txtServerIp_[i - 1] = makeBox(f, indexed("txtServerIp", i));
        txtServerIp_[i - 1]->setMinimumWidth(220);
        txtServerIp_[i - 1]->installEventFilter(this);
        cmdServerTest_[i - 1] = makeButton(f, indexed("cmdServerTest", i), "Test");
        lblServerState_[i - 1] = new QLabel(f);
        lblServerState_[i - 1]->setObjectName(indexed("lblServerState", i));
        lblServerState_[i - 1]->setAutoFillBackground(true);
        lblServerState_[i - 1]->setMinimumWidth(110);
        lblServerState_[i - 1]->setAlignment(Qt::AlignCenter);
        grid->addWidget(optServer_[i - 1], i, 0);
        grid->addWidget(txtServerIp_[i - 1], i, 1);
        grid->addWidget(cmdServerTest_[i - 1], i, 2);
        grid->addWidget(lblServerState_[i - 1], i, 3);
        connect(txtServerIp_[i - 1], &QLineEdit::textChanged, this, [this] { changed_ = true; });
        connect(optServer_[i - 1], &QRadioButton::clicked, this, &frmSystemConfig::markDefaultServer);
        connect(cmdServerTest_[i - 1], &QPushButton::clicked, this, [this, i] { testServer(i); });
    }
    grid->setRowStretch(5, 1);
    return f;
}

QWidget* frmSystemConfig::buildRoomPage()
{
    auto* f = new QGroupBox(QStringLiteral("Rooms"), this);
    f->setObjectName(indexed("fraMain", 1));
    lsvRoom_ = makeList(f, "lsvRoom", "Room id", "Player name or ip address");
    txtRoomID_ = makeBox(f, QStringLiteral("txtRoomID"));
    txtRoomIP_ = makeBox(f, QStringLiteral("txtRoomIP"));
    for (QLineEdit* box : {txtRoomID_, txtRoomIP_})
        box->installEventFilter(this);
    cmdRoomSave_ = makeButton(f, QStringLiteral("cmdRoomSave"), "Save (&S)");
    cmdRoomTest_ = makeButton(f, QStringLiteral("cmdRoomTest"), "Test (&T)");
    auto* row = new QHBoxLayout;
    row->addWidget(txtRoomID_, 1);
    row->addWidget(txtRoomIP_, 2);
    row->addWidget(cmdRoomSave_);
    row->addWidget(cmdRoomTest_);
    auto* layout = new QVBoxLayout(f);
    layout->addWidget(lsvRoom_, 1);
    layout->addLayout(row);
    connect(lsvRoom_, &QTreeWidget::itemClicked, this, &frmSystemConfig::roomClicked);
    connect(cmdRoomSave_, &QPushButton::clicked, this, &frmSystemConfig::saveRoom);
    connect(cmdRoomTest_, &QPushButton::clicked, this, &frmSystemConfig::testRoom);
    return f;
}

QWidget* frmSystemConfig::buildSynPage()
{
    auto* f = new QGroupBox(QStringLiteral("Synchronize player configuration"), this);
    f->setObjectName(indexed("fraMain", 2));
    lsvSyn_ = makeList(f, "lsvSyn", "Host", "Server name or ip address");
    txtSyn_ = new QPlainTextEdit(f);
    txtSyn_->setObjectName(QStringLiteral("txtSyn"));
    txtSyn_->setReadOnly(true);
    cmdSyn_ = makeButton(f, QStringLiteral("cmdSyn"), "Synchronize (&S)");
    cmdSynCancel_ = makeButton(f, QStringLiteral("cmdSynCancel"), "Stop (&T)");
    cmdSynCancel_->setEnabled(false);
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    row->addWidget(cmdSyn_);
    row->addWidget(cmdSynCancel_);
    auto* layout = new QVBoxLayout(f);
    layout->addWidget(lsvSyn_, 1);
    layout->addWidget(txtSyn_, 1);
    layout->addLayout(row);
    connect(cmdSyn_, &QPushButton::clicked, this, &frmSystemConfig::synchronize);
    connect(cmdSynCancel_, &QPushButton::clicked, this, &frmSystemConfig::cancelSyn);
    return f;
}

bool frmSystemConfig::ServerHostList(TextArray& /*hosts*/, bool /*write*/)
{
    return false;
}

bool frmSystemConfig::SaveRoomList(const QString& /*server*/, const TextArray& /*ids*/,
                                   const TextArray& /*addresses*/)
{
    return false;
}

void frmSystemConfig::ShowConfigPage()
{
    for (QWidget* f : fraMain_)
        f->hide();
    cmdNext_->setEnabled(true);
    cmdNext_->setText(TranslateText(QStringLiteral("Next")) + QStringLiteral(" (&N)"));
    if (page_ == 0) {
        QString defaultServer;
        defaultServer = DefaultServerName(ServerClass, defaultServer, false);
        TextArray hosts = NewTextArray();
        ServerHostList(hosts, false);
        for (int i = 1; i <= 4; ++i) {
            txtServerIp_[i - 1]->clear();
            lblServerState_[i - 1]->clear();
            paintBack(txtServerIp_[i - 1], QPalette::Base, kSysWindow);
            lblServerState_[i - 1]->setPalette(QPalette());
        }
        for (int i = 1; i <= std::min(4, UBound(hosts)); ++i) {
            txtServerIp_[i - 1]->setText(hosts[i]);
            if (hosts[i].compare(defaultServer, Qt::CaseInsensitive) == 0)
                optServer_[i - 1]->setChecked(true);
        }
        cmdPrevious_->setEnabled(false);
    }
    fraMain_[page_]->show();
    changed_ = false;
}

bool frmSystemConfig::askToSave()
{
    return changed_ && MsgAsk(TranslateText(QStringLiteral("Do you like to save changes?")),
                              MsgButtons::YesNo) == MsgAnswer::Yes;
}

void frmSystemConfig::saveServers()
{
    TextArray hosts = NewTextArray();
    QString defaultServer;
    for (int i = 1; i <= 4; ++i) {
        AppendItem(hosts, txtServerIp_[i - 1]->text());
        if (optServer_[i - 1]->isChecked())
            defaultServer = txtServerIp_[i - 1]->text();
    }
    if (ServerHostList(hosts, true)) {
        DefaultServerName(ServerClass, defaultServer, true);
        MsgInfo(TranslateText(QStringLiteral("Save successfully")));
    } else {
        MsgError(TranslateText(QStringLiteral("Save failed")));
    }
}

void frmSystemConfig::saveRooms()
{
    TextArray ids = NewTextArray(), addresses = NewTextArray();
    for (int r = 0; r < lsvRoom_->topLevelItemCount(); ++r) {
        AppendItem(ids, lsvRoom_->topLevelItem(r)->text(0));
        AppendItem(addresses, lsvRoom_->topLevelItem(r)->text(1));
    }
    QString server;
    server = DefaultServerName(ServerClass, server, false);
    if (SaveRoomList(server, ids, addresses))
        MsgInfo(TranslateText(QStringLiteral("Save successfully")));
    else
        MsgError(TranslateText(QStringLiteral("Save failed")));
}

void frmSystemConfig::next()
{
    if (page_ == 0 && askToSave())
        saveServers();
    else if (page_ == 1 && askToSave())
        saveRooms();
    else if (page_ == 2 && !changed_ &&
             MsgAsk(TranslateText(QStringLiteral("Do you like to synchronize all servers?")),
                    MsgButtons::YesNo) == MsgAnswer::Yes) {
        synchronize();
        if (synchronizing_) {
            QEventLoop wait;
            connect(this, &frmSystemConfig::SynchronizeEnded, &wait, &QEventLoop::quit);
            wait.exec();
        }
    }
    if (SystemUserLevel() == QLatin1String("Chief") && page_ < 2) {
        ++page_;
        ShowConfigPage();
    } else {
        accept();
    }
}

void frmSystemConfig::previous()
{
    if (page_ > 0) {
        --page_;
        ShowConfigPage();
    }
}

void frmSystemConfig::markDefaultServer()
{
    for (int i = 0; i < 4; ++i)
        paintBack(txtServerIp_[i], QPalette::Base, optServer_[i]->isChecked() ? kYellow : kSysWindow);
}

void frmSystemConfig::testServer(int i)
{
    QLabel* state = lblServerState_[i - 1];
    const bool reached = FileKind(HostShare(txtServerIp_[i - 1]->text())) == QLatin1String("p");
    paintBack(state, QPalette::Window, reached ? kGreen : kRed);
    state->setText(TranslateText(reached ? QStringLiteral("Successfully") : QStringLiteral("No respond")));
}

void frmSystemConfig::roomClicked()
{
    if (QTreeWidgetItem* row = lsvRoom_->currentItem()) {
        txtRoomID_->setText(row->text(0));
        txtRoomIP_->setText(row->text(1));
    }
}

void frmSystemConfig::saveRoom()
{
    QTreeWidgetItem* row = lsvRoom_->currentItem();
    if (!row || !row->isSelected() || txtRoomIP_->text() == row->text(1))
        return;
    row->setText(1, txtRoomIP_->text());
    changed_ = true;
}

void frmSystemConfig::testRoom()
{
    QTreeWidgetItem* row = lsvRoom_->currentItem();
    if (!row || !row->isSelected())
        return;
    const bool reached = FileKind(HostShare(row->text(1))) == QLatin1String("p");
    MsgInfo(TranslateText(QStringLiteral("Room id")) + QStringLiteral(" - ") + row->text(0) +
            QStringLiteral(", ") + TranslateText(QStringLiteral("Player name or ip address")) +
            QStringLiteral(" - ") + row->text(1) + QStringLiteral("\n") +
            TranslateText(reached ? QStringLiteral("Successfully") : QStringLiteral("No respond")));
}

void frmSystemConfig::report(const QString& text)
{
    report_ += text;
    txtSyn_->setPlainText(report_);
}

// Each host is one step from the event loop, so the stop button is seen between hosts and a dead
// host holds up nothing but its own step. Errors are not shown: each host's line says how it went.
void frmSystemConfig::synchronize()
{
    if (synchronizing_)
        return;
    synchronizing_ = true;
    cancel_ = false;
    cmdSyn_->setEnabled(false);
    cmdSynCancel_->setEnabled(true);
    report_.clear();
    txtSyn_->clear();
    const QString folder = AppPath() + QStringLiteral("/KtvPublic/");
    FileOperation(FO_COPY, folder + QStringLiteral("palyer.ini"),
                  folder + QStringLiteral("player_source.ini"));
    synRow_ = 0;
    synNextRow();
}

void frmSystemConfig::synNextRow()
{
    while (synRow_ < lsvSyn_->topLevelItemCount() && !cancel_) {
        QTreeWidgetItem* row = lsvSyn_->topLevelItem(synRow_++);
        if (row->checkState(0) != Qt::Checked)
            continue;
        report(QStringLiteral("Synchronizing ") + row->text(0) + QStringLiteral(" - ") + row->text(1));
        QTimer::singleShot(0, this, [this, address = row->text(1)] { synHost(address); });
        return;
    }
    synEnd();
}

void frmSystemConfig::synHost(const QString& address)
{
    const QString share = HostShare(address);
    bool done = false;
    if (FileKind(share) == QLatin1String("p")) {
        const QString copy = share + QStringLiteral("/player.ini");
        FileOperation(FO_DELETE, copy, {});
        done = FileOperation(FO_COPY, AppPath() + QStringLiteral("/KtvPublic/player_source.ini"), copy);
    }
    report(QStringLiteral(" ...... ") +
           TranslateText(done ? QStringLiteral("Successfully") : QStringLiteral("Failed")) + u'\n');
    synNextRow();
}

void frmSystemConfig::synEnd()
{
    if (cancel_)
        report(TranslateText(QStringLiteral("Abort")) + u'\n');
    FileOperation(FO_DELETE, AppPath() + QStringLiteral("/KtvPublic/player_source.ini"), {});
    cmdSyn_->setEnabled(true);
    cmdSynCancel_->setEnabled(false);
    synchronizing_ = false;
    emit SynchronizeEnded();
}

void frmSystemConfig::cancelSyn()
{
    cmdSyn_->setEnabled(true);
    cmdSynCancel_->setEnabled(false);
    cancel_ = true;
}

bool frmSystemConfig::eventFilter(QObject* watched, QEvent* event)
{
    // A box that gets the focus offers its whole text for typing over.
    if (event->type() == QEvent::FocusIn)
        if (auto* box = qobject_cast<QLineEdit*>(watched))
            QTimer::singleShot(0, box, &QLineEdit::selectAll);
    return QDialog::eventFilter(watched, event);
}

}  // namespace td
