#include "exchange/IndexClassOptions.h"
#include <QLineEdit>
#include <QRadioButton>

namespace td {

namespace {
const char* const kClasses[] = {"import", "index", "blank"};
}

void IndexClassOptions::show(const QString& indexClass, const QString& indexFrom) const
{
    for (int i = 0; i < 3; ++i)
        buttons[i]->setChecked(indexClass == QLatin1String(kClasses[i]));
    from->setEnabled(buttons[1]->isChecked());
    if (buttons[1]->isChecked())
        from->setText(indexFrom);
}

QString IndexClassOptions::checked() const
{
    for (int i = 0; i < 3; ++i)
        if (buttons[i]->isChecked())
            return QString::fromLatin1(kClasses[i]);
    return {};
}

}  // namespace td
