#pragma once
#include "shell/services/TextArray.h"
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace td::test {

// A directory tree for finder tests in a temporary folder. Paths are relative to its root; a path
// ending in "/" makes a directory.
class FinderTree {
public:
    explicit FinderTree(const QStringList& entries);
    QString root() const { return dir_.path(); }
    QString path(const QString& relative) const { return dir_.filePath(relative); }
    void write(const QString& relative, const QByteArray& content = {}) const;
    // The finder's result with the root cut off each path, without the empty element 0.
    QStringList relative(const TextArray& names) const;

private:
    QTemporaryDir dir_;
};

}  // namespace td::test
