#pragma once
#include <QString>
#include <QStringList>

namespace td {

// A file name pattern as the file dialogs and file operations read it: "*" and "?", no regard to case,
// "*.*" for every name (with or without a dot), several patterns joined by ";".
class Wildcard {
public:
    explicit Wildcard(const QString& patterns);
    bool matches(const QString& name) const;
    bool matchesAll() const { return all_; }

private:
    static bool matchOne(const QString& pattern, const QString& name);
    QStringList patterns_;  // case-folded
    bool all_ = false;
};

}  // namespace td
