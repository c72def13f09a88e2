#include "songdb/PinyinReadings.h"
#include <QHash>
#include <QMutex>
#include <QMutexLocker>
#include <memory>
#include <unicode/translit.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/uscript.h>

namespace td {

namespace {

// Han-Latin knows one reading per character. These characters are read otherwise often enough in
// song titles that a title must be found by either reading; Simplified and Traditional forms both.
const std::pair<const char16_t*, const char*> kFurtherReadings[] = {
    {u"重", "zhong chong"}, {u"长長", "chang zhang"}, {u"乐樂", "le yue"}, {u"行", "xing hang"},
    {u"还還", "hai huan"}, {u"了", "le liao"}, {u"得", "de dei"}, {u"地", "di de"}, {u"的", "de di"},
    {u"着著", "zhe zhao zhuo"}, {u"大", "da dai"}, {u"都", "dou du"}, {u"觉覺", "jue jiao"},
    {u"传傳", "chuan zhuan"}, {u"调調", "diao tiao"}, {u"会會", "hui kuai"}, {u"藏", "cang zang"},
    {u"朝", "chao zhao"}, {u"曾", "ceng zeng"}, {u"处處", "chu"}, {u"和", "he huo hu"},
    {u"给給", "gei ji"}, {u"降", "jiang xiang"}, {u"角", "jiao jue"}, {u"解", "jie xie"},
    {u"落", "luo la lao"}, {u"没沒", "mei mo"}, {u"便", "bian pian"}, {u"强強", "qiang jiang"},
    {u"说說", "shuo shui"}, {u"什", "shen shi"}, {u"似", "si shi"}, {u"数數", "shu shuo"},
    {u"为為爲", "wei"}, {u"相", "xiang"}, {u"兴興", "xing"}, {u"应應", "ying"}, {u"载載", "zai"},
    {u"种種", "zhong"}, {u"转轉", "zhuan"}, {u"薄", "bo bao"}, {u"差", "cha chai ci"},
    {u"单單", "dan shan chan"}, {u"参參", "can shen cen"}, {u"卡", "ka qia"}, {u"露", "lu lou"},
    {u"绿綠", "lv lu"}, {u"率", "lv shuai"}, {u"模", "mo mu"}, {u"色", "se shai"},
    {u"省", "sheng xing"}, {u"盛", "sheng cheng"}, {u"识識", "shi zhi"}, {u"属屬", "shu zhu"},
    {u"血", "xue xie"}, {u"约約", "yue yao"}, {u"厦廈", "sha xia"}, {u"秘", "mi bi"},
    {u"区區", "qu ou"}, {u"奇", "qi ji"}, {u"只隻", "zhi"}, {u"弹彈", "tan dan"}, {u"背", "bei"},
    {u"华華", "hua"}, {u"几幾", "ji"}, {u"咖", "ka ga"}, {u"空", "kong"}, {u"看", "kan"},
    {u"少", "shao"}, {u"正", "zheng"}, {u"好", "hao"}, {u"分", "fen"}, {u"间間", "jian"},
    {u"将將", "jiang"}, {u"结結", "jie"}, {u"期", "qi ji"}, {u"曲", "qu"}, {u"发發髮", "fa"},
    {u"难難", "nan"}, {u"宁寧", "ning"}, {u"压壓", "ya"}, {u"咽", "yan ye"}, {u"蔓", "man wan"},
    {u"仇", "chou qiu"}, {u"尾", "wei yi"}, {u"否", "fou pi"}, {u"脉脈", "mai mo"}, {u"壳殼", "ke qiao"},
};

// The syllable without its tone; ü (u with diaeresis) as v, as pinyin keyboards type it.
QString toneless(const QString& syllable)
{
    const QString d = syllable.normalized(QString::NormalizationForm_D);
    QString out;
    for (qsizetype i = 0; i < d.size(); ++i) {
        const QChar c = d[i];
        if (c == u'\u0308' && !out.isEmpty() && out.back() == u'u')
            out.back() = u'v';
        else if (c.category() != QChar::Mark_NonSpacing && c.unicode() < 0x80)
            out += c.toLower();
    }
    return out;
}

class HanReadings {
public:
    QStringList of(char32_t c)
    {
        QMutexLocker lock(&mutex_);
        if (const auto it = cache_.constFind(c); it != cache_.constEnd())
            return *it;
        QStringList readings = transliterated(c);
        for (const auto& [chars, further] : kFurtherReadings)
            if (c < 0x10000 && QStringView(chars).contains(QChar(char16_t(c))))
                for (const QString& r : QString::fromLatin1(further).split(u' '))
                    if (!readings.contains(r))
                        readings << r;
        cache_.insert(c, readings);
        return readings;
    }

private:
    QStringList transliterated(char32_t c)
    {
        if (!transliterator_) {
            UErrorCode status = U_ZERO_ERROR;
            transliterator_.reset(
                icu::Transliterator::createInstance("Han-Latin", UTRANS_FORWARD, status));
            if (U_FAILURE(status))
                transliterator_.reset();
            if (!transliterator_)
                return {};
        }
        icu::UnicodeString text = icu::UnicodeString(UChar32(c));
        transliterator_->transliterate(text);
        std::string utf8;
        text.toUTF8String(utf8);
        const QString syllable = toneless(QString::fromStdString(utf8).trimmed());
        // Left as it was: Han-Latin has no reading for it.
        if (syllable.isEmpty() || syllable.contains(u' '))
            return {};
        QStringList readings{syllable};
        if (syllable.contains(u'v'))
            readings << QString(syllable).replace(u'v', u'u');
        return readings;
    }

    QMutex mutex_;
    QHash<char32_t, QStringList> cache_;
    std::unique_ptr<icu::Transliterator> transliterator_;
};

HanReadings& hanReadings()
{
    static HanReadings readings;
    return readings;
}

bool isHan(char32_t c)
{
    UErrorCode status = U_ZERO_ERROR;
    return uscript_getScript(UChar32(c), &status) == USCRIPT_HAN;
}

// How one character of a title reads: its syllables; itself for a letter or digit of ASCII (also in
// its full-width form); nothing for what is skipped; '?' for the rest.
QStringList unitReadings(char32_t c)
{
    if (u_isspace(UChar32(c)) || u_ispunct(UChar32(c)) || (U_GET_GC_MASK(UChar32(c)) & U_GC_S_MASK))
        return {};
    if (isHan(c)) {
        QStringList readings = hanReadings().of(c);
        return readings.isEmpty() ? QStringList{QStringLiteral("?")} : readings;
    }
    const QString folded = QString::fromUcs4(&c, 1).normalized(QString::NormalizationForm_KD);
    const QChar first = folded.isEmpty() ? QChar() : folded[0];
    if (first.unicode() < 0x80 && first.isLetterOrNumber())
        return {QString(first.toLower())};
    if (u_charType(UChar32(c)) == U_NON_SPACING_MARK || u_charType(UChar32(c)) == U_FORMAT_CHAR)
        return {};
    return {QStringLiteral("?")};
}

}  // namespace

QStringList CharacterReadings(char32_t c)
{
    return isHan(c) ? hanReadings().of(c) : QStringList{};
}

QList<TitleReading> TitleReadings(const QString& title)
{
    QList<TitleReading> readings{TitleReading{}};
    for (const char32_t c : title.toUcs4()) {
        QStringList unit = unitReadings(c);
        if (unit.isEmpty())
            continue;
        if (readings.size() * unit.size() > kMaxTitleReadings)
            unit = unit.mid(0, 1);
        QList<TitleReading> next;
        next.reserve(readings.size() * unit.size());
        for (const TitleReading& r : readings)
            for (const QString& syllable : unit)
                next.append({r.initials + syllable[0], r.spelling + syllable});
        readings = std::move(next);
    }
    QList<TitleReading> distinct;
    for (const TitleReading& r : readings)
        if (!distinct.contains(r))
            distinct << r;
    return distinct;
}

QString PinyinKey(const QString& typed)
{
    QString key;
    for (const QChar c : typed) {
        if (c.isSpace())
            continue;
        const QChar lower = c.toLower();
        key += (lower >= u'a' && lower <= u'z') || (lower >= u'0' && lower <= u'9') ? lower : QChar(u'?');
    }
    return key;
}

}  // namespace td
