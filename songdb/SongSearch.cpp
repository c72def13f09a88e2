#include "songdb/SongSearch.h"
#include "shell/services/AppError.h"
#include "shell/services/Translate.h"
#include "songdb/Connection.h"
#include "songdb/RecordAccess.h"
#include "songdb/SongReadings.h"
#include "songdb/SongSession.h"
#include "songdb/SongStatements.h"
#include <cmath>

namespace td {

namespace {

const QString kSongFields = QStringLiteral("index, title, singer, [language], style");
const QString kNone = QStringLiteral("None");
const QString kAllArtist = QStringLiteral("All artist");
const QString kArtistByAlphabet = QStringLiteral("Search artist by alphabet");

// The four conditions of a search; the region list is read only when a statement needs it.
class Conditions {
public:
    explicit Conditions(int grade)
        : items_{QString(), QStringLiteral("grade<=") + QString::number(grade), {}, {}, {}}
    {
    }
    QString where()
    {
        if (!regionsRead_) {
            items_[2] = QStringLiteral("(song.region in (") + GetRegionList() +
                        QStringLiteral(") or song.region is null)");
            regionsRead_ = true;
        }
        return JoinConditions(items_);
    }
    void set(int i, const QString& c) { items_[i] = c; }
    // Replaces grade and region by a language filter when a filter slot holds one.
    void narrowByLanguage(int grade)
    {
        for (int i = 1; i <= 10; ++i)
            if (!SearchFilterValue()[i].isEmpty() && SearchFilterField()[i] == u"language") {
                items_[1] = QStringLiteral("grade<=") + QString::number(grade);
                items_[2] =
                    QStringLiteral("[language] like '%") + SearchFilterValue()[i] + QStringLiteral("%'");
                regionsRead_ = true;
            }
    }

private:
    TextArray items_;
    bool regionsRead_ = false;
};

// The filter slots as conditions; a title slot sets the search mode it stands for. Only the F1
// search takes a chars value as a number; elsewhere it goes into the statement as typed.
QString filterConditions(const QString& titleMode, bool charsAsNumber = false)
{
    QString extra;
    for (int i = 1; i <= 10; ++i) {
        const QString& field = SearchFilterField()[i];
        const QString& value = SearchFilterValue()[i];
        if (value.isEmpty())
            continue;
        if (field == u"title") {
            SearchMode() = titleMode;
            extra += AlphabetCondition(value);
        } else if (field == u"chars") {
            extra += QStringLiteral(" and [chars] = ") +
                     (charsAsNumber ? QString::number(NumericValue(value)) : value);
        } else {
            extra += QStringLiteral(" and [") + field + QStringLiteral("] = '") + value + u'\'';
        }
    }
    return extra;
}

void fillSongs(Recordset& rs, TextArray& names, TextArray& keys, bool withStars)
{
    const qsizetype n = rs.RecordCount();
    if (n < 1)
        return;
    const int title = rs.FieldIndex(u"title"), singer = rs.FieldIndex(u"singer");
    const int language = rs.FieldIndex(u"language"), index = rs.FieldIndex(u"index");
    const int ordered = withStars ? rs.FieldIndex(u"order_time") : -1;
    const double scale = ordered >= 0 ? rs.value(0, ordered).toDouble() / 5 : 0;
    names.reserve(n + 1);
    keys.reserve(n + 1);
    for (qsizetype r = 0; r < n; ++r) {
        QString text = rs.text(r, title) + QStringLiteral("  -") + rs.text(r, singer);
        const QString lang = rs.text(r, language);
        if (!lang.isEmpty())
            text += u'(' + lang + u')';
        if (scale > 0) {
            const auto stars = qsizetype(std::nearbyint(rs.value(r, ordered).toDouble() / scale + 1));
            text += QString(std::min<qsizetype>(stars, 5), u'*');
        }
        AppendItem(names, text);
        AppendItem(keys, rs.text(r, index));
    }
}

int songList(const QString& where, TextArray& names, TextArray& keys)
{
    std::unique_ptr<Recordset> rs;
    if (!SongGetRecordset(kSongFields, QStringLiteral("song"), where, QStringLiteral("title"), rs))
        return -1;
    fillSongs(*rs, names, keys, false);
    return UBound(names);
}

int popularList(const QString& where, TextArray& names, TextArray& keys)
{
    std::unique_ptr<Recordset> rs;
    if (!SongGetRecordset(kSongFields + QStringLiteral(",order_time"), QStringLiteral("song"), where,
                          QStringLiteral(" song.order_time DESC , song.title"), rs))
        return -1;
    fillSongs(*rs, names, keys, true);
    return UBound(names);
}

QString singerListSql(const QString& where)
{
    return QStringLiteral(
               "select distinct singer, type from song left join singer on song.singer = "
               "singer.name where ") +
           where + QStringLiteral(" order by singer");
}

int singerNames(const Recordset& rs, TextArray& names, TextArray& keys)
{
    for (qsizetype r = 0; r < rs.RecordCount(); ++r) {
        AppendItem(names, rs.text(r, 0));
        AppendItem(keys, rs.text(r, 0));
    }
    return UBound(names);
}

int singerList(const QString& where, TextArray& names, TextArray& keys)
{
    std::unique_ptr<Recordset> rs;
    if (!SongOpenRecordset(singerListSql(where), rs))
        return -1;
    return singerNames(*rs, names, keys);
}

// Keys copy the names, and an empty value shows as "None".
int valueNames(TextArray& names, TextArray& keys)
{
    for (int i = 1; i <= UBound(names); ++i)
        if (names[i].isEmpty())
            names[i] = kNone;
    keys = names;
    return UBound(names);
}

// Distinct values of a field.
int valueList(const QString& field, const QString& where, TextArray& names, TextArray& keys)
{
    if (!SongGetNamesFromField(QStringLiteral("song"), field, where, names)) {
        names = NewTextArray();
        return 0;
    }
    return valueNames(names, keys);
}

bool isValueField(const QString& code)
{
    return code == u"language" || code == u"style";
}

int singerTypeList(const QString& where, TextArray& names, TextArray& keys)
{
    TextArray types;
    if (!SongGetNamesFromField(QStringLiteral("singer INNER JOIN song ON singer.name = song.singer"),
                               QStringLiteral("singer.type"), where, types))
        return 0;
    AppendItem(keys, kAllArtist);
    AppendItem(keys, kArtistByAlphabet);
    AppendItem(names, TranslateText(kAllArtist));
    AppendItem(names, TranslateText(kArtistByAlphabet));
    for (int i = 1; i <= UBound(types); ++i) {
        AppendItem(keys, types[i].isEmpty() ? kNone : types[i]);
        AppendItem(names, types[i]);
    }
    return UBound(names);
}

int listNode(int grade, const QString& path, const QString& value, Conditions& cond, TextArray& names,
             TextArray& keys)
{
    if (path == u"chars") {
        for (int i = 1; i <= 99; ++i) {
            AppendItem(names, QString::number(i) + TranslateText(QStringLiteral("Character")));
            AppendItem(keys, QString::number(i));
        }
        return 99;
    }
    if (path == u"singer" || path == u"singer/All artist" || path == u"singer/Search artist by alphabet") {
        cond.narrowByLanguage(grade);
        return singerList(cond.where(), names, keys);
    }
    if (path == u"singer/name") {
        cond.narrowByLanguage(grade);
        return singerList(cond.where() + AlphabetCondition(value), names, keys);
    }
    if (isValueField(path))
        return valueList(path, cond.where(), names, keys);
    if (path == u"popularsongs/language")
        return valueList(QStringLiteral("language"), cond.where(), names, keys);
    if (path == u"singer/type")
        return singerTypeList(cond.where(), names, keys);
    if (path == u"title") {
        const QString where = cond.where() + AlphabetCondition(value);
        return songList(where + filterConditions(QStringLiteral("frmmenu/song/title")), names, keys);
    }
    return 0;
}

QString valueCondition(const QString& path, QString value)
{
    if (path == u"singer/male" || path == u"singer/female" || path == u"singer/mix" || path == u"singer/band")
        return QStringLiteral("singer like '%") + value + QStringLiteral("%'");
    if (path == u"singer/type")
        return value.startsWith(u"singer/")
                   ? QStringLiteral("singer.type like '%") + value.mid(7) + QStringLiteral("%'")
                   : QStringLiteral("singer like '%") + value + QStringLiteral("%'");
    if (path == u"chars")
        return QStringLiteral("chars = ") + value;
    if (path == u"title") {
        const QString c = AlphabetCondition(value);
        return c.isEmpty() ? QString() : c.mid(4);
    }
    if (path == u"Name")
        return {};
    if (path == u"order_time")
        return QStringLiteral("order_time >") + value;
    if (value == kNone)
        value.clear();
    if (path == u"popularsongs/language")
        return QStringLiteral("order_time>0 AND [language] like '%") + value + QStringLiteral("%'");
    return u'[' + path + QStringLiteral("] like '%") + value + QStringLiteral("%'");
}

int searchValue(const QString& path, const QString& value, Conditions& cond, TextArray& names,
                TextArray& keys)
{
    cond.set(4, valueCondition(path, value));
    if (path == u"singer/name") {
        cond.set(4, {});
        return singerList(cond.where() + AlphabetCondition(value), names, keys);
    }
    if (path == u"singer/type" &&
        (value == u"singer/All artist" || value == u"singer/Search artist by alphabet")) {
        cond.set(4, {});
        return singerList(cond.where(), names, keys);
    }
    if (path == u"singer/type" && value.startsWith(u"singer/"))
        return singerList(cond.where(), names, keys);
    const QString where = cond.where() + filterConditions(QStringLiteral("frmmenu/song/title"));
    return path == u"popularsongs/language" ? popularList(where, names, keys) : songList(where, names, keys);
}

}  // namespace

bool BringSongReadingsUpToDate()
{
    Connection* db = SongConnection();
    if (!db)
        return false;
    try {
        UpdateSongReadings(*db);
        return true;
    } catch (const AppError& e) {
        ReportStatementFailure("UpdateSongReadings", QStringLiteral("song_reading"), e.description());
        return false;
    }
}

QString& SearchMode()
{
    static QString mode;
    return mode;
}

std::array<QString, 11>& SearchFilterField()
{
    static std::array<QString, 11> fields;
    return fields;
}

std::array<QString, 11>& SearchFilterValue()
{
    static std::array<QString, 11> values;
    return values;
}

QString SearchTypeCaption(const QString& key)
{
    static const std::pair<const char16_t*, const char*> captions[] = {
        {u"song", "All songs"},
        {u"singer", "Search by singer - all"},
        {u"singer/title", "Search artist by alphabet"},
        {u"language", "Search by language"},
        {u"style", "Search by style"},
        {u"chars", "Search by char number"},
        {u"title", "Search song by alphabet"},
        {u"pinyin", "Search song by pinyin"}};
    for (const auto& [k, caption] : captions)
        if (key == QStringView(k))
            return TranslateText(QString::fromUtf8(caption));
    return {};
}

QString JoinConditions(const TextArray& conditions)
{
    QStringList parts;
    for (int i = 1; i <= UBound(conditions); ++i)
        if (!conditions[i].isEmpty())
            parts << conditions[i];
    return parts.join(QStringLiteral(" and "));
}

QString GetRegionList()
{
    TextArray names;
    SongGetNamesFromField(QStringLiteral("region"), QStringLiteral("Name"), {}, names);
    QStringList quoted;
    for (int i = 1; i <= UBound(names); ++i)
        quoted << u'\'' + names[i] + u'\'';
    return quoted.join(u',');
}

QString SearchTypeValuesStatement(int grade, const QString& code)
{
    Conditions cond(grade);
    if (code == u"singer") {
        cond.narrowByLanguage(grade);
        return singerListSql(cond.where());
    }
    if (isValueField(code))
        return SongNamesFromFieldSql(QStringLiteral("song"), code, cond.where());
    return {};
}

int SearchTypeValuesFromRows(const QString& code, const Recordset& rs, TextArray& names, TextArray& keys)
{
    names = NewTextArray();
    keys = NewTextArray();
    if (code == u"singer")
        return singerNames(rs, names, keys);
    NamesFromFirstField(rs, names);
    return valueNames(names, keys);
}

void ReportSearchTypeValuesFailure(const QString& code, const QString& sql, const QString& description)
{
    ReportStatementFailure("SongOpenRecordset", sql, description);
    if (isValueField(code))
        ReportNamesFromFieldFailure();
}

int SongSearchTree(int grade, const QString& path, const QString& value, TextArray& names, TextArray& keys)
{
    names = NewTextArray();
    keys = NewTextArray();
    Conditions cond(grade);
    if (path == u"F1:search") {
        SearchMode() = QStringLiteral("frmmenu/research");
        const QString where =
            cond.where() + filterConditions(QStringLiteral("frmmenu/f1search/song/title"), true);
        return songList(where, names, keys);
    }
    if (path.isEmpty() || path == u"*") {
        for (const char16_t* key : {u"song", u"singer", u"language", u"style", u"chars"}) {
            AppendItem(keys, QString::fromUtf16(key));
            AppendItem(names, SearchTypeCaption(QString::fromUtf16(key)));
        }
        return 5;
    }
    if (path == u"song") {
        if (!value.isEmpty() && value != u"*")
            cond.set(4, QStringLiteral("title = '") + value + u'\'');
        return songList(cond.where(), names, keys);
    }
    if (path == u"pinyin") {
        const QString pinyin = PinyinCondition(value);
        if (!pinyin.isEmpty() && !BringSongReadingsUpToDate())
            return -1;
        cond.set(4, pinyin);
        return songList(cond.where(), names, keys);
    }
    if (value.isEmpty() || value == u"*")
        return listNode(grade, path, value, cond, names, keys);
    return searchValue(path, value, cond, names, keys);
}

}  // namespace td
