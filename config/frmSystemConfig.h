#pragma once
#include "controls/WindowFrame.h"
#include "shell/services/TextArray.h"
#include <QDialog>

class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QRadioButton;
class QTreeWidget;
class QWidget;

namespace td {

// The user level of the session; nothing sets it yet, so only a "Chief" would see the later pages.
QString& SystemUserLevel();

// The share through which a host is reached: its KtvPublic folder below NetworkRoot; empty text for
// no host.
QString HostShare(const QString& host);

// The wizard for the machines of a site: the servers and the default one, the rooms of the server,
// and the copying of the master player configuration to every server. It reaches a machine only by
// looking at its KtvPublic folder.
class frmSystemConfig : public QDialog {
    Q_OBJECT
public:
    explicit frmSystemConfig(WindowFrame& frame = NoFrame());

    // Shows the page in the page number.
    void ShowConfigPage();

    QString ServerClass;
    int page() const { return page_; }
    void setPage(int page) { page_ = page; }
    bool changed() const { return changed_; }
    // True from the start of a synchronisation until its working copy is gone again.
    bool synchronizing() const { return synchronizing_; }

    QWidget* fraMain(int page) const { return fraMain_[page]; }
    QRadioButton* optServer(int i) const { return optServer_[i - 1]; }
    QLineEdit* txtServerIp(int i) const { return txtServerIp_[i - 1]; }
    QPushButton* cmdServerTest(int i) const { return cmdServerTest_[i - 1]; }
    QLabel* lblServerState(int i) const { return lblServerState_[i - 1]; }
    QTreeWidget* lsvRoom() const { return lsvRoom_; }
    QLineEdit* txtRoomID() const { return txtRoomID_; }
    QLineEdit* txtRoomIP() const { return txtRoomIP_; }
    QPushButton* cmdRoomSave() const { return cmdRoomSave_; }
    QPushButton* cmdRoomTest() const { return cmdRoomTest_; }
    QTreeWidget* lsvSyn() const { return lsvSyn_; }
    QPlainTextEdit* txtSyn() const { return txtSyn_; }
    QPushButton* cmdSyn() const { return cmdSyn_; }
    QPushButton* cmdSynCancel() const { return cmdSynCancel_; }
    QPushButton* cmdPrevious() const { return cmdPrevious_; }
    QPushButton* cmdNext() const { return cmdNext_; }
    QPushButton* cmdClose() const { return cmdClose_; }

signals:
    void SynchronizeEnded();

protected:
    // Where the list of servers and the rooms of a server would be kept. Neither is kept yet: both
    // answer false, and so every save of them fails.
    virtual bool ServerHostList(TextArray& hosts, bool write);
    virtual bool SaveRoomList(const QString& server, const TextArray& ids, const TextArray& addresses);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* buildServerPage();
    QWidget* buildRoomPage();
    QWidget* buildSynPage();
    void next();
    void previous();
    bool askToSave();
    void saveServers();
    void saveRooms();
    void markDefaultServer();
    void testServer(int i);
    void roomClicked();
    void saveRoom();
    void testRoom();
    void synchronize();
    void synNextRow();
    void synHost(const QString& address);
    void synEnd();
    void cancelSyn();
    void report(const QString& text);

    int page_ = 0;
    bool changed_ = false;
    bool cancel_ = false;
    bool synchronizing_ = false;
    int synRow_ = 0;
    QString report_;

    QWidget* fraMain_[3] = {};
    QRadioButton* optServer_[4] = {};
    QLineEdit* txtServerIp_[4] = {};
    QPushButton* cmdServerTest_[4] = {};
    QLabel* lblServerState_[4] = {};
    QTreeWidget* lsvRoom_ = nullptr;
    QLineEdit* txtRoomID_ = nullptr;
    QLineEdit* txtRoomIP_ = nullptr;
    QPushButton* cmdRoomSave_ = nullptr;
    QPushButton* cmdRoomTest_ = nullptr;
    QTreeWidget* lsvSyn_ = nullptr;
    QPlainTextEdit* txtSyn_ = nullptr;
    QPushButton* cmdSyn_ = nullptr;
    QPushButton* cmdSynCancel_ = nullptr;
    QPushButton* cmdPrevious_ = nullptr;
    QPushButton* cmdNext_ = nullptr;
    QPushButton* cmdClose_ = nullptr;
};

}  // namespace td
