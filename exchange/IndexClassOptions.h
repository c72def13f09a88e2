#pragma once
#include <QString>

class QLineEdit;
class QRadioButton;

namespace td {

// The three index classes of the import wizards ("import", "index", "blank"), one radio button each,
// with the first number beside "index".
struct IndexClassOptions {
    QRadioButton* buttons[3] = {};
    QLineEdit* from = nullptr;

    // Checks the class's button; the first number is offered only with "index".
    void show(const QString& indexClass, const QString& indexFrom) const;
    // The class of the checked button, empty when none is.
    QString checked() const;
};

}  // namespace td
