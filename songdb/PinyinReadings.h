#pragma once
#include <QList>
#include <QString>
#include <QStringList>

namespace td {

// One way to read a title aloud in Mandarin: the first letter of each character's syllable, and the
// syllables written together, both in lower-case ASCII. Latin letters and digits stand for
// themselves; blanks, punctuation and symbols are skipped; any other character (kana, a hanzi with
// no known reading) is '?', which nothing typed matches, so a match stops there.
struct TitleReading {
    QString initials;
    QString spelling;
    friend bool operator==(const TitleReading&, const TitleReading&) = default;
};

// Readings of one title, the usual one first. A character with several readings multiplies them; past
// kMaxTitleReadings, characters further on keep their usual reading only.
inline constexpr int kMaxTitleReadings = 16;
QList<TitleReading> TitleReadings(const QString& title);

// The syllables of one hanzi (toneless, ü written as v, the usual one first); empty for any other
// character. Safe to call from any thread.
QStringList CharacterReadings(char32_t c);

// What the operator typed, as a key compared with readings: lower case, blanks taken out. Empty
// when nothing is left; holds a '?' when it holds anything no reading can contain.
QString PinyinKey(const QString& typed);

}  // namespace td
