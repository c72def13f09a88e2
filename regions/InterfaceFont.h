#pragma once
#include <QFont>
#include <QString>

namespace td {

struct InterfaceFontSpec {
    QString Name;
    int Size = 9;
    int Weight = 400;
    int Charset = 0;
    QFont toQFont() const;
};

// The font borrowed from the desktop's general font, "MS Serif" where none is configured.
InterfaceFontSpec GetInterfaceFont();

}  // namespace td
