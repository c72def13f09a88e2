#pragma once
#include <QDialog>

namespace td {

// The about box: the program's name, version, contact links, and the system information tool.
class AboutBox : public QDialog {
    Q_OBJECT
public:
    explicit AboutBox(QWidget* parent = nullptr);
};

}  // namespace td
