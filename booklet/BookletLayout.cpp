#include "booklet/BookletLayout.h"
#include "songdb/Gb2312Initials.h"
#include "songdb/Gb2312Order.h"
#include "songdb/PinyinReadings.h"
#include <QHash>
#include <algorithm>
#include <cctype>

namespace td {

namespace {

// Keys of the first level of GB2312, the hanzi filed in pinyin order: 啊 (B0A1) to 座 (D7F9).
constexpr std::uint32_t kFirstLevelLow = 0xB0A10000u;
constexpr std::uint32_t kFirstLevelHigh = 0xD7F90000u;
constexpr std::uint64_t kNoLetterRank = 27;

std::uint32_t keyOfUtf8(const char* character)
{
    return Gb2312CharKey(QString::fromUtf8(character).toUcs4().value(0));
}

struct KeyedRange {
    char letter;
    std::uint32_t lower, upper;
};

const std::vector<KeyedRange>& firstLevelRanges()
{
    static const std::vector<KeyedRange> ranges = [] {
        std::vector<KeyedRange> r;
        for (const auto& range : kGb2312InitialRanges)
            r.push_back({range.letter, keyOfUtf8(range.lower), keyOfUtf8(range.upper)});
        r.push_back({'Z', keyOfUtf8(kGb2312InitialZ), kFirstLevelHigh + 1});
        return r;
    }();
    return ranges;
}

bool passedOver(char32_t c)
{
    const QChar::Category cat = QChar::category(c);
    return QChar::isSpace(c) || QChar::isPunct(c) || cat == QChar::Symbol_Math ||
           cat == QChar::Symbol_Currency || cat == QChar::Symbol_Modifier || cat == QChar::Symbol_Other;
}

// 'A' to 'Z' for a letter or a hanzi of known reading, 0 for anything else.
char letterOf(char32_t c, std::uint32_t key)
{
    if (c >= 0xFF21 && c <= 0xFF5A)  // full-width Latin letters
        c -= 0xFF21 - u'A';
    if (c < 0x80)
        return std::isalpha(int(c)) ? char(std::toupper(int(c))) : 0;
    if (key >= kFirstLevelLow && key <= kFirstLevelHigh) {
        for (const KeyedRange& r : firstLevelRanges())
            if (key >= r.lower && key < r.upper)
                return r.letter;
        return 0;
    }
    const QStringList readings = CharacterReadings(c);
    if (readings.isEmpty() || readings.first().isEmpty())
        return 0;
    const char first = readings.first().at(0).toLatin1();
    return first >= 'a' && first <= 'z' ? char(first - 'a' + 'A') : 0;
}

struct Keyed {
    std::vector<std::uint64_t> key;
    qsizetype position;
};

bool keyedBefore(const Keyed& a, const Keyed& b)
{
    return a.key != b.key ? a.key < b.key : a.position < b.position;
}

// The songs in initial order of their titles, equal titles by index.
QList<BookletSong> sortedByTitle(const QList<BookletSong>& songs)
{
    std::vector<Keyed> keyed;
    keyed.reserve(std::size_t(songs.size()));
    for (qsizetype i = 0; i < songs.size(); ++i)
        keyed.push_back({InitialOrderKey(songs[i].title), i});
    std::sort(keyed.begin(), keyed.end(), [&](const Keyed& a, const Keyed& b) {
        if (a.key != b.key)
            return a.key < b.key;
        return songs[a.position].index < songs[b.position].index;
    });
    QList<BookletSong> out;
    out.reserve(songs.size());
    for (const Keyed& k : keyed)
        out << songs[k.position];
    return out;
}

// Groups songs by a name, the groups in initial order of their names, the unnamed group last.
QList<BookletSection> groupedByName(const QList<BookletSong>& songs, QString BookletSong::*name)
{
    QHash<QString, qsizetype> at;
    QList<BookletSection> sections;
    for (const BookletSong& s : songs) {
        const QString key = (s.*name).trimmed();
        qsizetype section = at.value(key, -1);
        if (section < 0) {
            section = sections.size();
            at.insert(key, section);
            sections.append({key, 0, {}});
        }
        sections[section].songs << s;
    }
    std::vector<Keyed> keyed;
    for (qsizetype i = 0; i < sections.size(); ++i) {
        std::vector<std::uint64_t> key = InitialOrderKey(sections[i].name);
        key.insert(key.begin(), sections[i].name.isEmpty() ? 1 : 0);
        keyed.push_back({std::move(key), i});
    }
    std::sort(keyed.begin(), keyed.end(), keyedBefore);
    QList<BookletSection> out;
    for (const Keyed& k : keyed) {
        out << std::move(sections[k.position]);
        out.last().songs = sortedByTitle(out.last().songs);
    }
    return out;
}

QList<BookletSection> groupedByLength(const QList<BookletSong>& songs)
{
    QList<BookletSection> sections;
    for (const BookletSong& s : sortedByTitle(songs)) {
        const int chars = TitleLength(s);
        auto it = std::lower_bound(sections.begin(), sections.end(), chars,
                                   [](const BookletSection& x, int n) { return x.chars < n; });
        if (it == sections.end() || it->chars != chars)
            it = sections.insert(it, BookletSection{{}, chars, {}});
        it->songs << s;
    }
    return sections;
}

}  // namespace

QChar InitialLetter(const QString& text)
{
    for (const char32_t c : text.toUcs4()) {
        if (passedOver(c))
            continue;
        const char letter = letterOf(c, Gb2312CharKey(c));
        return letter ? QChar(QLatin1Char(letter)) : QChar(u'#');
    }
    return QChar(u'#');
}

std::vector<std::uint64_t> InitialOrderKey(const QString& text)
{
    std::vector<std::uint64_t> key;
    key.reserve(std::size_t(text.size()));
    for (const char32_t c : text.toUcs4()) {
        if (passedOver(c))
            continue;
        const std::uint32_t gb = Gb2312CharKey(c);
        const char letter = letterOf(c, gb);
        const std::uint64_t rank = letter ? std::uint64_t(letter - 'A' + 1) : kNoLetterRank;
        key.push_back(rank << 32 | gb);
    }
    return key;
}

int TitleLength(const BookletSong& song)
{
    if (song.chars > 0)
        return song.chars;
    int n = 0;
    for (const char32_t c : song.title.toUcs4())
        if (!QChar::isSpace(c))
            ++n;
    return n;
}

QList<BookletSection> GroupBookletSongs(const QList<BookletSong>& songs, BookletGroup group)
{
    switch (group) {
        case BookletGroup::Singer:
            return groupedByName(songs, &BookletSong::singer);
        case BookletGroup::Language:
            return groupedByName(songs, &BookletSong::language);
        case BookletGroup::Length:
            return groupedByLength(songs);
    }
    return {};
}

QList<BookletPage> LayOutBooklet(const QList<BookletSection>& sections, const BookletFrame& frame)
{
    const int columns = std::max(1, frame.columns);
    const int heading = std::max(1, frame.headingLines);
    const int lines = std::max(frame.lines, heading + 1);  // a heading and one song, at least
    QList<BookletPage> pages;
    BookletPage page;
    page.columns.append(BookletColumn{});
    int used = 0;
    const auto nextColumn = [&] {
        used = 0;
        if (page.columns.size() == columns) {
            pages << page;
            page.columns.clear();
        }
        page.columns.append(BookletColumn{});
    };
    const auto place = [&](BookletLine line, int height) {
        page.columns.last() << line;
        used += height;
    };
    for (int s = 0; s < sections.size(); ++s) {
        if (sections[s].songs.isEmpty())
            continue;
        if (used > 0 && used + heading + 1 > lines)
            nextColumn();
        place({BookletLine::Heading, s, -1}, heading);
        for (int i = 0; i < sections[s].songs.size(); ++i) {
            if (used + 1 > lines) {
                nextColumn();
                place({BookletLine::Continued, s, -1}, heading);
            }
            place({BookletLine::Song, s, i}, 1);
        }
    }
    if (pages.isEmpty() || !page.columns.first().isEmpty())
        pages << page;
    return pages;
}

}  // namespace td
