// A region's string.txt, edited by a localiser in any text editor, and the lookups of the interface.
#include "fuzz/FuzzSupport.h"
#include "fuzz/FuzzTargets.h"
#include "shell/services/TextStore.h"
#include "shell/services/Translate.h"

namespace td::fuzz {

int FuzzRegionText(const uint8_t* data, size_t size)
{
    WriteFile(QStringLiteral("Region/Fuzz/string.txt"), Input(data, size));
    ResetInterfaceRegion();
    const bool loaded = SetInterfaceRegion(QStringLiteral("Fuzz"));
    Expect(!loaded || InterfaceRegion() == u"Fuzz", "a loaded region is the interface region");
    const QString texts[] = {QStringLiteral("Save (&S)"), QStringLiteral("Import songbook ..."),
                             QStringLiteral("Songbook"), QStringLiteral("No song or media selected!")};
    for (const QString& text : texts)
        Expect(!TranslateText(text).isEmpty(), "a text never vanishes");
    // Every key the file holds is looked up as the console would, with and without its accelerator.
    if (loaded) {
        TextArray keys;
        ReadTextKeys(ReadTextStore(GetRegionFile(QStringLiteral("Fuzz"))), keys);
        for (int i = 1; i <= UBound(keys) && i <= 16; ++i) {
            TranslateText(keys[i]);
            TranslateText(keys[i] + QStringLiteral(" (&K)"));
        }
    }
    ResetInterfaceRegion();
    return 0;
}

}  // namespace td::fuzz
