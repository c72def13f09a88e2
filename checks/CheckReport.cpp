#include "checks/CheckReport.h"
#include "shell/services/AppError.h"
#include <QDateTime>

namespace td {

namespace {
constexpr int kZone = 14;
}

CheckReport::CheckReport(const QString& path) : path_(path), file_(path)
{
    if (!file_.open(QIODevice::WriteOnly | QIODevice::Truncate))
        throw AppError(QStringLiteral("Can't create file <") + path + QStringLiteral("> ") + file_.errorString());
}

CheckReport::~CheckReport()
{
    close();
}

void CheckReport::write(const QString& s)
{
    const QByteArray bytes = s.toUtf8();
    if (file_.write(bytes) != bytes.size())
        throw AppError(QStringLiteral("Can't write file <") + path_ + QStringLiteral("> ") + file_.errorString());
}

CheckReport& CheckReport::text(const QString& s)
{
    write(s);
    column_ += int(s.size());
    return *this;
}

CheckReport& CheckReport::tab(int column)
{
    if (column_ > column)
        line();
    if (column_ < column)
        text(QString(column - column_, u' '));
    return *this;
}

CheckReport& CheckReport::nextZone()
{
    const int next = ((column_ - 1) / kZone + 1) * kZone + 1;
    return text(QString(next - column_, u' '));
}

CheckReport& CheckReport::line()
{
    write(QStringLiteral("\n"));
    column_ = 1;
    return *this;
}

void CheckReport::openingBlock(const QString& title)
{
    const QString stars = u' ' + QString(70, u'*');
    tab(10).line(stars);
    tab(10).line(title + QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")));
    tab(10).line(stars);
    line();
}

void CheckReport::rule()
{
    line(QString(80, u'-'));
}

void CheckReport::close()
{
    if (file_.isOpen())
        file_.close();
}

}  // namespace td
