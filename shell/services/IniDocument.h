#pragma once
#include <QString>
#include <QStringList>
#include <optional>

namespace td {

// An INI file held as its lines, so a write changes one line and keeps everything else as it was.
class IniDocument {
public:
    static IniDocument load(const QString& file);  // a missing or unreadable file loads empty
    bool save(const QString& file) const;          // atomic: temporary file and rename

    // The raw value of the first matching key, without truncation; nullopt when section or key is missing.
    std::optional<QString> value(const QString& section, const QString& key) const;
    void setValue(const QString& section, const QString& key, const QString& value);
    // The lines of a section, each trimmed, blank lines left out; nullopt when the section is missing.
    std::optional<QStringList> sectionLines(const QString& section) const;
    bool removeSection(const QString& section);
    // The names of all sections, in file order, as a lookup would match them.
    QStringList sectionNames() const;

private:
    // Index of the section's header line, or -1.
    int findSection(const QString& section) const;
    // One past the last line of the section that starts at header.
    int sectionEnd(int header) const;
    int findKey(int header, const QString& key) const;

    QStringList lines_;
    bool byteOrderMark_ = false;  // the file began with one; a save keeps it
};

}  // namespace td
