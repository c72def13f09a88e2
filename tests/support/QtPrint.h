#pragma once
#include <QString>
#include <ostream>

// Lets test failures show texts as texts.
inline void PrintTo(const QString& s, std::ostream* os)
{
    *os << '"' << s.toStdString() << '"';
}
