#include "songdb/JetSql.h"
#include "shell/services/AppError.h"
#include "songdb/JetTokens.h"
#include <QSet>
#include <map>

using namespace Qt::StringLiterals;

namespace td {

namespace {

using jet::Token;
using jet::TokenKind;

AppError unsupported(const QString& what)
{
    return AppError(QStringLiteral("Unsupported Jet SQL: ") + what);
}

// Words that may stand before "(" without being a function call.
bool isKeywordBeforeParen(const QString& lower)
{
    static const QSet<QString> words = {
        u"in"_s,    u"exists"_s, u"values"_s, u"and"_s, u"or"_s,    u"not"_s,    u"on"_s,
        u"where"_s, u"select"_s, u"from"_s,   u"as"_s,  u"into"_s,  u"join"_s,   u"having"_s,
        u"by"_s,    u"set"_s,    u"like"_s,   u"is"_s,  u"union"_s, u"all"_s,    u"distinct"_s,
        u"then"_s,  u"else"_s,   u"when"_s,   u"any"_s, u"some"_s,  u"between"_s};
    return words.contains(lower);
}

// Words after which a name followed by "(" is a table with its column list, not a call.
bool introducesTable(const QString& lower)
{
    return lower == u"into" || lower == u"table" || lower == u"from" || lower == u"join" ||
           lower == u"update" || lower == u"index" || lower == u"on";
}

class Translator {
public:
    Translator(const QString& jet, const SqlDialect& dialect) : dialect_(dialect), tokens_(jet::Tokenize(jet))
    {
        sigOf_.assign(tokens_.size(), -1);
        for (int i = 0; i < int(tokens_.size()); ++i) {
            if (tokens_[std::size_t(i)].kind == TokenKind::Space)
                continue;
            sigOf_[std::size_t(i)] = int(sig_.size());
            sig_.push_back(i);
        }
        out_.resize(tokens_.size());
    }

    TranslatedStatement run()
    {
        checkOneStatement();
        TranslatedStatement st;
        const QString first = sigLower(0);
        st.kind = first == u"select" ? TranslatedStatement::Kind::Rows : TranslatedStatement::Kind::NoRows;
        for (std::size_t t = 0; t < tokens_.size(); ++t)
            out_[t] = render(int(t));
        applyPending();
        if (!dialect_.characterFunctions.isEmpty())
            fuseCharacterTests();
        QString limit;
        if (first == u"select") {
            limit = takeTop();
            takeSelectInto(st);
        }
        if (first == u"delete" && sigText(1) == u"*")
            drop(1);
        st.sql = joined() + limit;
        if (st.kind == TranslatedStatement::Kind::Rows) {
            st.baseTable = singleTable();
            const QString key = st.baseTable.isEmpty() ? QString()
                                : dialect_.rowKeyOf    ? dialect_.rowKeyOf(st.baseTable)
                                                       : dialect_.rowKey;
            if (key.isEmpty())
                st.baseTable.clear();
            if (!st.baseTable.isEmpty()) {
                out_[std::size_t(sig_[0])] += QLatin1Char(' ') + key + QStringLiteral(" AS td_key,");
                st.keyedSql = joined() + limit;
            }
        }
        return st;
    }

private:
    const Token& sigTok(int s) const { return tokens_[std::size_t(sig_[std::size_t(s)])]; }
    int sigCount() const { return int(sig_.size()); }
    QString sigText(int s) const { return s < sigCount() ? sigTok(s).text : QString(); }
    QString sigLower(int s) const
    {
        return s < sigCount() && sigTok(s).kind == TokenKind::Word ? sigTok(s).text.toLower() : QString();
    }
    int sigIndexOf(int tokenIndex) const { return sigOf_[std::size_t(tokenIndex)]; }

    void checkOneStatement() const
    {
        for (int s = 0; s < sigCount(); ++s)
            if (sigTok(s).kind == TokenKind::Semicolon && s + 1 < sigCount())
                throw AppError(
                    QStringLiteral("Only one statement can run at a time: text after ';' is not allowed."));
        if (sigCount() == 0)
            throw AppError(QStringLiteral("The SQL statement is empty."));
    }

    QString joined() const
    {
        QString s;
        for (const auto& part : out_)
            s += part;
        return s.trimmed();
    }

    QString render(int t)
    {
        const Token& tok = tokens_[std::size_t(t)];
        switch (tok.kind) {
            case TokenKind::Space:
                return tok.text;
            case TokenKind::Semicolon:
                return {};
            case TokenKind::String:
                return jet::QuoteLiteral(tok.text);
            case TokenKind::Bracket:
                return jet::QuoteName(dialect_.foldNames ? tok.text.toLower() : tok.text);
            case TokenKind::Symbol:
                if (tok.text == u"&")
                    return QStringLiteral("||");
                if (tok.text == u"(" && !dialect_.emptyList.isEmpty() && sigIndexOf(t) > 0 &&
                    sigLower(sigIndexOf(t) - 1) == u"in" &&
                    sigText(sigIndexOf(t) + 1) == u")")
                    return u'(' + dialect_.emptyList;
                return tok.text;
            case TokenKind::Number:
                return tok.text;
            case TokenKind::DateLiteral:
                throw unsupported(QStringLiteral("date literal #") + tok.text + QStringLiteral("#"));
            case TokenKind::Word:
                return renderWord(t);
        }
        return tok.text;
    }

    QString renderWord(int t)
    {
        const Token& tok = tokens_[std::size_t(t)];
        const QString lower = tok.text.toLower();
        const int s = sigIndexOf(t);
        if (lower == u"transform" || lower == u"pivot" || lower == u"distinctrow" || lower == u"parameters")
            throw unsupported(tok.text.toUpper());
        if (lower == u"index")
            return QStringLiteral("\"index\"");
        if (lower == u"true")
            return QStringLiteral("1");
        if (lower == u"false")
            return QStringLiteral("0");
        if (lower == u"like" && !dialect_.likeOperator.isEmpty())
            return dialect_.likeOperator;
        const bool call = sigText(s + 1) == u"(" && !isKeywordBeforeParen(lower) &&
                          !(s > 0 && introducesTable(sigLower(s - 1)));
        return call ? renderCall(s, tok.text) : tok.text;
    }

    // Index of the ")" that closes the "(" at significant position open.
    int closingParen(int open) const
    {
        int depth = 0;
        for (int s = open; s < sigCount(); ++s) {
            if (sigText(s) == u"(")
                ++depth;
            else if (sigText(s) == u")" && --depth == 0)
                return s;
        }
        throw AppError(QStringLiteral("Missing ')' in SQL statement."));
    }

    int firstArgComma(int open) const
    {
        int depth = 0;
        for (int s = open; s < sigCount(); ++s) {
            if (sigText(s) == u"(")
                ++depth;
            else if (sigText(s) == u")")
                --depth;
            else if (depth == 1 && sigText(s) == u",")
                return s;
        }
        return -1;
    }

    QString& outAt(int s) { return out_[std::size_t(sig_[std::size_t(s)])]; }
    // Removes a token together with the white space behind it.
    void drop(int s)
    {
        const auto t = std::size_t(sig_[std::size_t(s)]);
        out_[t].clear();
        if (t + 1 < tokens_.size() && tokens_[t + 1].kind == TokenKind::Space)
            out_[t + 1].clear();
    }

    // Jet functions in their native form; a text piece compares in GB2312 order like a column.
    QString renderCall(int s, const QString& name)
    {
        const QString lower = name.toLower();
        static const QSet<QString> same = {u"count"_s, u"sum"_s,  u"min"_s,   u"max"_s,  u"avg"_s,
                                           u"abs"_s,   u"trim"_s, u"ltrim"_s, u"rtrim"_s};
        if (same.contains(lower))
            return name;
        if (lower == u"ucase")
            return dialect_.upperFunction;
        if (lower == u"lcase")
            return QStringLiteral("lower");
        if (lower == u"len")
            return QStringLiteral("length");
        if (lower == u"mid" || lower == u"left") {
            const int close = closingParen(s + 1);
            pendingAfter_[close] += dialect_.textCollation;
            if (lower == u"left") {
                const int comma = firstArgComma(s + 1);
                if (comma < 0)
                    throw AppError(QStringLiteral("Wrong number of arguments used with function Left."));
                pendingAfter_[comma] += QStringLiteral(" 1,");
            }
            return QStringLiteral("substr");
        }
        if (lower == u"now" || lower == u"date") {
            if (sigText(s + 2) != u")")
                throw unsupported(name + QStringLiteral("() with arguments"));
            if (!dialect_.nowFunction.isEmpty())
                return lower == u"now" ? dialect_.nowFunction : dialect_.dateFunction;
            pendingAfter_[s + 1] += QStringLiteral("'now','localtime'");
            return lower == u"now" ? QStringLiteral("datetime") : QStringLiteral("date");
        }
        throw unsupported(QStringLiteral("function ") + name + QStringLiteral("()"));
    }

    bool isSymbol(int s, QStringView text) const
    {
        return s < sigCount() && sigTok(s).kind == TokenKind::Symbol && sigTok(s).text == text;
    }

    // A text literal of one BMP character, rendered.
    bool charLiteral(int s, QString& rendered) const
    {
        if (s >= sigCount() || sigTok(s).kind != TokenKind::String || sigTok(s).text.size() != 1 ||
            sigTok(s).text[0].isSurrogate())
            return false;
        rendered = out_[std::size_t(sig_[std::size_t(s)])];
        return true;
    }

    // "Mid(x,i,1)" at s, with x a name and i a whole number from 1: x and i rendered, and the
    // position behind it; -1 for anything else.
    struct CharRef {
        QString x, pos;
        bool operator==(const CharRef&) const = default;
    };
    int charRef(int s, CharRef& ref) const
    {
        if (sigLower(s) != u"mid" || !isSymbol(s + 1, u"(") || !isSymbol(s + 3, u",") ||
            !isSymbol(s + 5, u",") || !isSymbol(s + 7, u")") || sigTok(s + 6).kind != TokenKind::Number ||
            sigText(s + 6) != u"1")
            return -1;
        const TokenKind x = sigTok(s + 2).kind;
        bool ok = false;
        const int pos = sigTok(s + 4).kind == TokenKind::Number ? sigText(s + 4).toInt(&ok) : 0;
        if ((x != TokenKind::Word && x != TokenKind::Bracket) || !ok || pos < 1 || pos > 1000000)
            return -1;
        ref = {out_[std::size_t(sig_[std::size_t(s + 2)])], QString::number(pos)};
        return s + 8;
    }

    // "M>='lo'" or "M>='lo' And M<'hi'" on one character M at s: its end, -1 for no match.
    int charRange(int s, CharRef& ref, QString& lo, QString& hi) const
    {
        int e = charRef(s, ref);
        if (e < 0 || !isSymbol(e, u">=") || !charLiteral(e + 1, lo))
            return -1;
        e += 2;
        hi = QStringLiteral("NULL");
        CharRef again;
        const int e2 = sigLower(e) == u"and" ? charRef(e + 1, again) : -1;
        if (e2 >= 0 && again == ref && isSymbol(e2, u"<") && charLiteral(e2 + 1, hi))
            return e2 + 2;
        return e;
    }

    // "UCASE(M)='c'" at s: its end, -1 for no match.
    int charUpper(int s, CharRef& ref, QString& c) const
    {
        if (sigLower(s) != u"ucase" || !isSymbol(s + 1, u"("))
            return -1;
        const int e = charRef(s + 2, ref);
        if (e < 0 || !isSymbol(e, u")") || !isSymbol(e + 1, u"=") || !charLiteral(e + 2, c))
            return -1;
        return e + 3;
    }

    // Whether an expression from s to e (exclusive) stands as one operand of AND or OR, so that
    // replacing it by one call keeps the meaning: nothing that binds tighter touches it.
    bool standsAlone(int s, int e) const
    {
        static const QSet<QString> before = {u"and"_s, u"or"_s, u"where"_s, u"having"_s, u"on"_s};
        static const QSet<QString> after = {u"and"_s, u"or"_s, u"order"_s, u"group"_s, u"having"_s};
        const bool startOk = s > 0 && (isSymbol(s - 1, u"(") || before.contains(sigLower(s - 1)));
        const bool endOk = e >= sigCount() || isSymbol(e, u")") || sigTok(e).kind == TokenKind::Semicolon ||
                           after.contains(sigLower(e));
        return startOk && endOk;
    }

    void replace(int s, int e, const QString& text)
    {
        out_[std::size_t(sig_[std::size_t(s)])] = text;
        for (int t = sig_[std::size_t(s)] + 1; t <= sig_[std::size_t(e - 1)]; ++t)
            out_[std::size_t(t)].clear();
    }

    // Comparisons of one character of a text with one character, as the initial-letter search
    // writes them, become one function call each: the general form cuts the character out and
    // converts it again for every comparison, on every row.
    void fuseCharacterTests()
    {
        for (int s = 0; s < sigCount(); ++s)
            if (sigLower(s) == u"between")  // its "and" is no operator
                return;
        const QString& fn = dialect_.characterFunctions;
        const auto call = [](const QString& name, const CharRef& ref, const QStringList& rest) {
            return name + u'(' + ref.x + u',' + ref.pos + u',' + rest.join(u',') + u')';
        };
        for (int s = 0; s < sigCount(); ++s) {
            CharRef ref, upperRef;
            QString lo, hi, c;
            int e = -1;
            if (isSymbol(s, u"(") && (e = charRange(s + 1, ref, lo, hi)) >= 0 && sigLower(e) == u"or" &&
                (e = charUpper(e + 1, upperRef, c)) >= 0 && upperRef == ref && isSymbol(e, u")")) {
                replace(s + 1, e, call(fn + QStringLiteral("in_or_upper_is"), ref, {lo, hi, c}));
                s = e;
            } else if ((e = charRange(s, ref, lo, hi)) >= 0 && standsAlone(s, e)) {
                replace(s, e, call(fn + QStringLiteral("in"), ref, {lo, hi}));
                s = e - 1;
            } else if ((e = charUpper(s, ref, c)) >= 0 && standsAlone(s, e)) {
                replace(s, e, call(fn + QStringLiteral("upper_is"), ref, {c}));
                s = e - 1;
            }
        }
    }

    // "select top n ..." becomes a LIMIT at the end.
    QString takeTop()
    {
        int s = 1;
        if (sigLower(s) == u"distinct")
            ++s;
        if (sigLower(s) != u"top")
            return {};
        if (s + 1 >= sigCount() || sigTok(s + 1).kind != TokenKind::Number)
            throw unsupported(QStringLiteral("TOP without a number"));
        if (sigLower(s + 2) == u"percent")
            throw unsupported(QStringLiteral("TOP ... PERCENT"));
        drop(s);
        const QString n = sigText(s + 1);
        drop(s + 1);
        return QStringLiteral(" LIMIT ") + n;
    }

    void applyPending()
    {
        for (const auto& [s, text] : pendingAfter_)
            outAt(s) += text;
        pendingAfter_.clear();
    }

    // "select ... into T [in 'file'] from ...": the select alone, the target aside.
    void takeSelectInto(TranslatedStatement& st)
    {
        int depth = 0;
        for (int s = 1; s < sigCount(); ++s) {
            if (sigText(s) == u"(")
                ++depth;
            else if (sigText(s) == u")")
                --depth;
            if (depth != 0 || sigLower(s) != u"into")
                continue;
            if (s + 1 >= sigCount() ||
                (sigTok(s + 1).kind != TokenKind::Word && sigTok(s + 1).kind != TokenKind::Bracket))
                throw AppError(QStringLiteral("Missing table name after INTO."));
            st.kind = TranslatedStatement::Kind::SelectInto;
            st.intoTable = sigText(s + 1);
            drop(s);
            drop(s + 1);
            if (sigLower(s + 2) == u"in") {
                if (s + 3 >= sigCount() || sigTok(s + 3).kind != TokenKind::String)
                    throw unsupported(QStringLiteral("IN without a database file name"));
                st.intoFile = sigText(s + 3);
                drop(s + 2);
                drop(s + 3);
            }
            return;
        }
    }

    // The table of "select <no distinct, no aggregate> ... from T [alias] [where|order ...]", else empty.
    QString singleTable() const
    {
        if (sigLower(1) == u"distinct")
            return {};
        int depth = 0;
        int from = -1;
        for (int s = 1; s < sigCount(); ++s) {
            const QString t = sigText(s);
            if (t == u"(")
                ++depth;
            else if (t == u")")
                --depth;
            if (depth > 0)
                continue;
            const QString w = sigLower(s);
            if (w == u"group" || w == u"having" || w == u"union" || w == u"join")
                return {};
            static const QSet<QString> aggregates = {u"count"_s, u"sum"_s, u"min"_s, u"max"_s, u"avg"_s};
            if (from < 0 && aggregates.contains(w) && sigText(s + 1) == u"(")
                return {};
            if (w == u"from" && from < 0)
                from = s;
        }
        if (from < 0 || from + 1 >= sigCount())
            return {};
        const Token& table = sigTok(from + 1);
        if (table.kind != TokenKind::Word && table.kind != TokenKind::Bracket)
            return {};
        int next = from + 2;
        if (sigTok(std::min(next, sigCount() - 1)).kind == TokenKind::Word && next < sigCount()) {
            const QString w = sigLower(next);
            if (w == u"as")
                next += 2;
            else if (w != u"where" && w != u"order")
                ++next;  // an alias
        }
        if (next < sigCount() && sigLower(next) != u"where" && sigLower(next) != u"order" &&
            sigTok(next).kind != TokenKind::Semicolon)
            return {};
        return table.text;
    }

    const SqlDialect& dialect_;
    std::vector<Token> tokens_;
    std::vector<int> sig_;      // indexes of tokens that are not white space
    std::vector<int> sigOf_;    // token index to its place in sig_, -1 for white space
    std::vector<QString> out_;  // rendered text per token
    std::map<int, QString> pendingAfter_;
};

}  // namespace

TranslatedStatement TranslateJetSql(const QString& jet, const SqlDialect& dialect)
{
    return Translator(jet, dialect).run();
}

}  // namespace td
