#pragma once
#include <QString>
#include <stdexcept>

namespace td {

// A run-time error that travels to the caller's trap, carrying the description
// that messages show after " Err=".
class AppError : public std::runtime_error {
public:
    explicit AppError(const QString& description)
        : std::runtime_error(description.toStdString()), description_(description)
    {
    }
    const QString& description() const { return description_; }

private:
    QString description_;
};

// " Err=" and the description, or nothing when there is no description.
inline QString ErrSuffix(const QString& description)
{
    return description.isEmpty() ? QString() : QStringLiteral(" Err=") + description;
}
// The description of any error caught: an AppError's own, otherwise what the library said.
inline QString ErrorText(const std::exception& e)
{
    if (auto* app = dynamic_cast<const AppError*>(&e))
        return app->description();
    return QString::fromUtf8(e.what());
}
inline QString ErrSuffix(const std::exception& e)
{
    return ErrSuffix(ErrorText(e));
}

// The numeric value of a text: the number at its start, 0 when there is none. Never an error.
double NumericValue(const QString& text);
long long IntegerValue(const QString& text);

}  // namespace td
