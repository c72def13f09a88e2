#include "shell/services/Wildcard.h"

namespace td {

Wildcard::Wildcard(const QString& patterns)
{
    for (QString p : patterns.split(u';', Qt::SkipEmptyParts)) {
        p = p.trimmed().toCaseFolded();
        if (p.isEmpty())
            continue;
        if (p == QLatin1String("*") || p == QLatin1String("*.*"))
            all_ = true;
        patterns_ << p;
    }
    if (patterns_.isEmpty())
        all_ = true;
}

bool Wildcard::matches(const QString& name) const
{
    if (all_)
        return true;
    const QString folded = name.toCaseFolded();
    for (const QString& p : patterns_)
        if (matchOne(p, folded))
            return true;
    return false;
}

bool Wildcard::matchOne(const QString& pattern, const QString& name)
{
    // "name." asks for a name without an extension.
    if (pattern.endsWith(u'.') && !name.contains(u'.'))
        return matchOne(pattern.chopped(1), name);
    // "*.ext" is by far the common case.
    if (pattern.startsWith(QLatin1String("*.")) && pattern.indexOf(u'*', 1) < 0 && pattern.indexOf(u'?') < 0)
        return name.endsWith(QStringView(pattern).mid(1));

    qsizetype p = 0, n = 0, star = -1, mark = 0;
    while (n < name.size()) {
        if (p < pattern.size() && (pattern[p] == u'?' || pattern[p] == name[n])) {
            ++p;
            ++n;
        } else if (p < pattern.size() && pattern[p] == u'*') {
            star = p++;
            mark = n;
        } else if (star >= 0) {
            p = star + 1;
            n = ++mark;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == u'*')
        ++p;
    // "*.*" and "name.*" also take a name without a dot.
    if (p + 2 == pattern.size() && pattern[p] == u'.' && pattern[p + 1] == u'*')
        return true;
    return p == pattern.size();
}

}  // namespace td
