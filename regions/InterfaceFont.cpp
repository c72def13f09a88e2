#include "regions/InterfaceFont.h"
#include "shell/services/AppError.h"
#include "shell/services/Ini.h"

namespace td {

InterfaceFontSpec GetInterfaceFont()
{
    const QString key = QStringLiteral("Software\\Microsoft\\Notepad");
    InterfaceFontSpec font;
    font.Name = RegRead(0, key, QStringLiteral("lfFaceName"), QStringLiteral("MS Serif"));
    font.Size = 9;
    font.Weight = 400;
    font.Charset = int(IntegerValue(RegRead(0, key, QStringLiteral("lfCharSet"), QStringLiteral("0"))));
    return font;
}

QFont InterfaceFontSpec::toQFont() const
{
    QFont f(Name, Size);
    f.setWeight(QFont::Weight(Weight));
    return f;
}

}  // namespace td
