#pragma once
#include "controls/SettingsWindow.h"
#include "shell/services/TextArray.h"

class QLabel;
class QListWidget;
class QPushButton;

namespace td {

// The globe regions, whose songs the room players of every region show: section GlobeRegion of
// config. Only regions the songbook offers can be chosen; the empty entry stands for songs of no region.
class frmGlobeRegion : public SettingsWindow {
    Q_OBJECT
public:
    explicit frmGlobeRegion(WindowFrame& frame = NoFrame(), QWidget* parent = nullptr);

    QListWidget* lstAvailable() const { return lstAvailable_; }
    QListWidget* lstGlobe() const { return lstGlobe_; }
    QPushButton* cmdAdd() const { return cmdAdd_; }
    QPushButton* cmdDel() const { return cmdDel_; }

protected:
    void Apply() override;

private:
    void load();
    void add();
    void del();

    TextArray names_;
    QListWidget* lstAvailable_ = nullptr;
    QListWidget* lstGlobe_ = nullptr;
    QPushButton* cmdAdd_ = nullptr;
    QPushButton* cmdDel_ = nullptr;
    QLabel* lblNote_ = nullptr;
};

}  // namespace td
