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
        u"in"_s, u"exists"_s, u"values"_s, u"and"_s, u"or"_s, u"not"_s, u"on"_s, u"where"_s,
        u"select"_s, u"from"_s, u"as"_s, u"into"_s, u"join"_s, u"having"_s, u"by"_s, u"set"_s,
        u"like"_s, u"is"_s, u"union"_s, u"all"_s, u"distinct"_s, u"then"_s, u"else"_s, u"when"_s,
        u"any"_s, u"some"_s, u"between"_s};
    return words.contains(lower);
}

// Words after which a name followed by "(" is a table with its column list, not a call.
bool introducesTable(const QString& lower)
{
    return lower == u"into" || lower == u"table" || lower == u"from" || lower == u"join" || lower == u"update"
        || lower == u"index" || lower == u"on";
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
            if (!st.baseTable.isEmpty()) {
                out_[std::size_t(sig_[0])] += QLatin1Char(' ') + dialect_.rowKey + QStringLiteral(" AS td_key,");
                st.keyedSql = joined() + limit;
            }
        }
        return st;
    }

private:
    const Token& sigTok(int s) const { return tokens_[std::size_t(sig_[std::size_t(s)])]; }
    int sigCount() const { return int(sig_.size()); }
    QString sigText(int s) const { return s < sigCount() ? sigTok(s).text : QString(); }
    QString sigLower(int s) const { return s < sigCount() && sigTok(s).kind == TokenKind::Word ? sigTok(s).text.toLower() : QString(); }
    int sigIndexOf(int tokenIndex) const { return sigOf_[std::size_t(tokenIndex)]; }

    void checkOneStatement() const
    {
        for (int s = 0; s < sigCount(); ++s)
            if (sigTok(s).kind == TokenKind::Semicolon && s + 1 < sigCount())
                throw AppError(QStringLiteral("Only one statement can run at a time: text after ';' is not allowed."));
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
            return jet::QuoteName(tok.text);
        case TokenKind::Symbol:
            if (tok.text == u"&")
                return QStringLiteral("||");
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
        const bool call = sigText(s + 1) == u"(" && !isKeywordBeforeParen(lower)
            && !(s > 0 && introducesTable(sigLower(s - 1)));
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
        static const QSet<QString> same = {u"count"_s, u"sum"_s, u"min"_s, u"max"_s, u"avg"_s,
                                           u"abs"_s, u"trim"_s, u"ltrim"_s, u"rtrim"_s};
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
            pendingAfter_[s + 1] += QStringLiteral("'now','localtime'");
            return lower == u"now" ? QStringLiteral("datetime") : QStringLiteral("date");
        }
        throw unsupported(QStringLiteral("function ") + name + QStringLiteral("()"));
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
            if (s + 1 >= sigCount() || (sigTok(s + 1).kind != TokenKind::Word && sigTok(s + 1).kind != TokenKind::Bracket))
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
                ++next;   // an alias
        }
        if (next < sigCount() && sigLower(next) != u"where" && sigLower(next) != u"order"
            && sigTok(next).kind != TokenKind::Semicolon)
            return {};
        return table.text;
    }

    const SqlDialect& dialect_;
    std::vector<Token> tokens_;
    std::vector<int> sig_;              // indexes of tokens that are not white space
    std::vector<int> sigOf_;            // token index to its place in sig_, -1 for white space
    std::vector<QString> out_;          // rendered text per token
    std::map<int, QString> pendingAfter_;
};

}  // namespace

TranslatedStatement TranslateJetSql(const QString& jet, const SqlDialect& dialect)
{
    return Translator(jet, dialect).run();
}

}  // namespace td
