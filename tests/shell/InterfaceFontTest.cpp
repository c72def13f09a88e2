#include "FakePlatform.h"
#include "regions/InterfaceFont.h"
#include "shell/services/Ini.h"
#include <gtest/gtest.h>

using namespace td;

TEST(InterfaceFont, DesktopFontOrMsSerif)
{
    test::FakePlatform platform;
    InterfaceFontSpec f = GetInterfaceFont();
    EXPECT_EQ(f.Name, QStringLiteral("MS Serif"));
    EXPECT_EQ(f.Size, 9);
    EXPECT_EQ(f.Weight, 400);
    EXPECT_EQ(f.Charset, 0);

    platform.font = QStringLiteral("Noto Sans CJK SC");
    EXPECT_EQ(GetInterfaceFont().Name, QStringLiteral("Noto Sans CJK SC"));
    EXPECT_EQ(RegRead(0, QStringLiteral("software\\microsoft\\notepad"), QStringLiteral("LFFACENAME"), {}),
              QStringLiteral("Noto Sans CJK SC"));
    EXPECT_EQ(
        RegRead(0, QStringLiteral("Software\\Other"), QStringLiteral("lfFaceName"), QStringLiteral("d")),
        QStringLiteral("d"));
    EXPECT_EQ(RegRead(1, QStringLiteral("Software\\Microsoft\\Notepad"), QStringLiteral("lfFaceName"),
                      QStringLiteral("d")),
              QStringLiteral("d"));
}
