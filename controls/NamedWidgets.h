#pragma once
#include <QString>
#include <QWidget>

namespace td {

// A captioned control (label, button, frame) with the object name the window's text file knows it
// by, so that ApplyWindowText finds it.
template <class Widget>
Widget* NamedWidget(const char* name, const char* caption, QWidget* parent)
{
    auto* w = new Widget(QString::fromUtf8(caption), parent);
    w->setObjectName(QString::fromLatin1(name));
    return w;
}

}  // namespace td
