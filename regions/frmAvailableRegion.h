#pragma once
#include "controls/SettingsWindow.h"
#include "shell/services/TextArray.h"

class QListWidget;
class QPushButton;

namespace td {

// The regions this songbook offers, in table region: the song list shows their songs and those of no
// region, and only they can become the interface language or globe regions. The installed regions
// the songbook does not offer stand in the list at the right.
class frmAvailableRegion : public SettingsWindow {
    Q_OBJECT
public:
    explicit frmAvailableRegion(WindowFrame& frame = NoFrame(), QWidget* parent = nullptr);

    QListWidget* lstAll() const { return lstAll_; }
    QListWidget* lstAvailable() const { return lstAvailable_; }
    QPushButton* cmdAdd() const { return cmdAdd_; }
    QPushButton* cmdDel() const { return cmdDel_; }
    QPushButton* cmdLocalize() const { return cmdLocalize_; }

protected:
    void Apply() override;

private:
    void load();
    void add();
    void del();
    void localize();

    TextArray names_;
    QListWidget* lstAll_ = nullptr;
    QListWidget* lstAvailable_ = nullptr;
    QPushButton* cmdAdd_ = nullptr;
    QPushButton* cmdDel_ = nullptr;
    QPushButton* cmdLocalize_ = nullptr;
};

}  // namespace td
