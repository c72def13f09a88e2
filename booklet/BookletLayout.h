#pragma once
#include <QList>
#include <QString>
#include <cstdint>
#include <vector>

namespace td {

// How the songs of a booklet are grouped: under their singers, by the number of characters of the
// title (then by initial), or by language.
enum class BookletGroup { Singer, Length, Language };

struct BookletSong {
    qint64 index = 0;
    QString title;
    QString singer;
    QString language;
    int chars = 0;  // as the songbook keeps it; 0: counted from the title
};

// One group of the booklet: what its heading names and its songs in print order.
struct BookletSection {
    QString name;   // the singer or language; empty for songs without one
    int chars = 0;  // the title length of a length group
    QList<BookletSong> songs;
};

// The initial letter a text is filed under, 'A' to 'Z', or '#' for one that starts with neither a
// letter nor a hanzi. First-level GB2312 hanzi take the letter of the initial-letter search; other
// hanzi (Traditional, second level) the initial of their pinyin. Leading blanks and punctuation are
// passed over.
QChar InitialLetter(const QString& text);

// The order of texts in the booklet: character by character, first by initial letter, then by GB2312
// order (which puts first-level hanzi in pinyin order); ASCII letters regardless of case, texts that
// start with neither a letter nor a hanzi last.
std::vector<std::uint64_t> InitialOrderKey(const QString& text);

// The title length a song is grouped under.
int TitleLength(const BookletSong& song);

// The songs in their groups, each group and each group's songs in print order. Songs without a singer
// or a language come last, in a group with an empty name.
QList<BookletSection> GroupBookletSongs(const QList<BookletSong>& songs, BookletGroup group);

// A line of a column: a group's heading, the heading repeated for a group carried over from the
// previous column, or a song.
struct BookletLine {
    enum Kind { Heading, Continued, Song };
    Kind kind = Song;
    int section = 0;
    int song = -1;  // position in the section's songs, for a song
    friend bool operator==(const BookletLine&, const BookletLine&) = default;
};
using BookletColumn = QList<BookletLine>;
struct BookletPage {
    QList<BookletColumn> columns;
};

// Room on a page, counted in song lines; a heading takes headingLines.
struct BookletFrame {
    int columns = 3;
    int lines = 60;
    int headingLines = 2;
};

// Where every line of the booklet goes, computed before anything is drawn. Columns fill top to bottom,
// left to right. A heading stands only where at least one of its songs follows it in the same column;
// a group that goes on in the next column starts that column with its continued heading.
QList<BookletPage> LayOutBooklet(const QList<BookletSection>& sections, const BookletFrame& frame);

}  // namespace td
