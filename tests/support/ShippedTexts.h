#pragma once
// Whether every text a part of the interface looks up has a line in each shipped language. For test
// programs, which know the source folder.
#include "shell/services/TextStore.h"
#include "shell/services/Translate.h"
#include <QSet>
#include <QStringList>
#include <functional>

namespace td::test {

// The keys looked up for translation while show runs.
inline QSet<QString> TextsLookedUp(const std::function<void()>& show)
{
    QSet<QString> keys;
    SetTranslateObserver([&keys](const QString& key) { keys.insert(key); });
    show();
    SetTranslateObserver(nullptr);
    keys.remove(QString());
    return keys;
}

// "<region> lacks: <key>" for each shipped language and key without a line, sorted by language and key;
// empty when every language has every key.
inline QStringList MissingShippedTexts(const QSet<QString>& keys)
{
    QStringList missing;
    for (const char* region : {"English", "Chinese(PRC)", "Chinese(Taiwan)"}) {
        const QString text = ReadTextStore(QStringLiteral(TUNEDESK_SOURCE_DIR "/data/Region/") +
                                           QString::fromLatin1(region) + QStringLiteral("/string.txt"));
        QStringList lacking;
        for (const QString& key : keys)
            if (ReadTextValue(text, QStringLiteral("Resource"), key, QString()).isEmpty())
                lacking << QString::fromLatin1(region) + QStringLiteral(" lacks: ") + key;
        lacking.sort();
        missing << lacking;
    }
    return missing;
}

}  // namespace td::test
