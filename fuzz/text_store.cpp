// The text store: song information files (.son) and the region text files.
#include "fuzz/FuzzSupport.h"
#include "fuzz/FuzzTargets.h"
#include "shell/services/AppError.h"
#include "shell/services/TextStore.h"

namespace td::fuzz {

int FuzzTextStore(const uint8_t* data, size_t size)
{
    const QString file = WriteFile(QStringLiteral("store/song.son"), Input(data, size));
    QString text;
    try {
        text = ReadTextStore(file);
    } catch (const AppError&) {
        Expect(size < 2, "only a file shorter than its byte-order mark is refused");
        return 0;
    }
    Expect(text.startsWith(QStringLiteral("\r\n")) && text.endsWith(QStringLiteral("\r\n")),
           "a read text begins and ends with a line break");

    // What is written reads back unchanged.
    Expect(WriteTextStore(file, text), "a text store can be written");
    Expect(ReadTextStore(file) == text, "a written text store reads back as it was");

    TextArray keys;
    Expect(ReadTextKeys(text, keys), "the keys can always be listed");
    const QString sections[] = {QStringLiteral("Default"), QStringLiteral("Resource"), QStringLiteral("")};
    for (const QString& section : sections) {
        for (int i = 1; i <= UBound(keys) && i <= 8; ++i) {
            const QString key = keys[i];
            const QString missing = QStringLiteral("\x01missing");
            const bool present = ReadTextValue(text, section, key, missing) != missing;
            QString changed = text;
            WriteTextValue(changed, section, key, QStringLiteral("new value"));
            // A key that was found is replaced where it stands.
            if (present)
                Expect(ReadTextValue(changed, section, key, missing) == u"new value",
                       "a key that is present takes its new value");
        }
    }
    // A section that is not there yet is added at the end with its key.
    const QString fresh = QStringLiteral("td-fuzz-section");
    if (ReadTextValue(text, fresh, QStringLiteral("k"), QStringLiteral("-")) == u"-" &&
        !text.contains(QStringLiteral("\r\n[") + fresh + QStringLiteral("]\r\n"))) {
        QString changed = text;
        WriteTextValue(changed, fresh, QStringLiteral("k"), QStringLiteral("v"));
        Expect(changed.startsWith(text), "a new section leaves the text before it alone");
        Expect(ReadTextValue(changed, fresh, QStringLiteral("k"), {}) == u"v", "a new section's key is found");
    }
    return 0;
}

}  // namespace td::fuzz
