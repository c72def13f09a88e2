#pragma once
#include <QFile>
#include <QString>

namespace td {

// A plain text report written line by line as a BASIC program prints to a file: Tab(n) moves to column n
// (the first column is 1), on the next line when the text has already passed it; a zone jump pads to the
// next print zone of 14 columns. Lines end in "\n"; the file is UTF-8, this machine's text encoding.
class CheckReport {
public:
    // Creates or empties the file; throws AppError when it cannot be written.
    explicit CheckReport(const QString& path);
    ~CheckReport();

    CheckReport& text(const QString& s);
    CheckReport& tab(int column);
    CheckReport& nextZone();
    // Ends the line.
    CheckReport& line();
    CheckReport& line(const QString& s) { return text(s).line(); }

    // The block every report opens with: the star rule, the title with the date and time, the star rule
    // and an empty line.
    void openingBlock(const QString& title);
    // The rule under a report's heading.
    void rule();
    void close();
    const QString& path() const { return path_; }

    // A number as the reports print it: one blank before and one after its digits.
    static QString printedNumber(qint64 n) { return u' ' + QString::number(n) + u' '; }

private:
    void write(const QString& s);

    QString path_;
    QFile file_;
    int column_ = 1;
};

}  // namespace td
