#pragma once
#include "controls/WindowFrame.h"
#include <QDialog>

class QGroupBox;
class QLineEdit;
class QPushButton;
class QTreeWidget;

namespace td {

// Chooses the song database: a path written to KtvPublic/database_home.ini when confirmed. A modal
// dialog: of its frame it needs only the window it stands over.
class frmDatabase : public QDialog {
    Q_OBJECT
public:
    explicit frmDatabase(WindowFrame& frame = NoFrame());

    QString DBType = QStringLiteral("SongServer");
    bool Ok = false;

    QLineEdit* txtLocal() const { return txtLocal_; }
    QPushButton* cmdOpen() const { return cmdOpen_; }
    QPushButton* cmdCancel() const { return cmdCancel_; }
    QPushButton* cmdBrowse() const { return cmdBrowse_; }

protected:
    void showEvent(QShowEvent* event) override;

private:
    void layoutWindow();
    void browse();
    void open();
    void cancel();

    QGroupBox* fraLocal_ = nullptr;
    QGroupBox* fraServer_ = nullptr;
    QLineEdit* txtLocal_ = nullptr;
    QPushButton* cmdBrowse_ = nullptr;
    QTreeWidget* lsvServer_ = nullptr;
    QPushButton* cmdOpen_ = nullptr;
    QPushButton* cmdCancel_ = nullptr;
    QPushButton* cmdSystem_ = nullptr;
    QString dialogFile_;  // what the file dialog last held; it keeps it across showings
    bool laidOut_ = false;
};

// The server chosen for a kind of database, in KtvPublic/server.ini.
QString DefaultServerName(const QString& dbType, QString& name, bool write);

}  // namespace td
