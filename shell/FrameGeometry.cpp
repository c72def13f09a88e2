#include "shell/FrameGeometry.h"
#include "shell/services/Ini.h"
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <algorithm>

namespace td {
namespace {

const QString kLeft = QStringLiteral("FrameLeft");
const QString kTop = QStringLiteral("FrameTop");
const QString kWidth = QStringLiteral("FrameWidth");
const QString kHeight = QStringLiteral("FrameHeight");
const QString kMaximized = QStringLiteral("FrameMaximized");

// Below this a frame shows neither its toolbar nor a list; a smaller screen still wins.
constexpr int kMinWidth = 640;
constexpr int kMinHeight = 480;

int readNumber(const QString& key, bool& ok)
{
    bool one = false;
    const int n = AppIniRead(key, QString()).trimmed().toInt(&one);
    ok = ok && one;
    return n;
}

QRect storedGeometry(bool& maximized)
{
    bool ok = true;
    const int left = readNumber(kLeft, ok);
    const int top = readNumber(kTop, ok);
    const int width = readNumber(kWidth, ok);
    const int height = readNumber(kHeight, ok);
    maximized = AppIniRead(kMaximized, QStringLiteral("0")).trimmed() == u"1";
    return ok ? QRect(left, top, width, height) : QRect();
}

QScreen* screenFor(const QRect& stored)
{
    if (stored.isValid())
        if (QScreen* s = QGuiApplication::screenAt(stored.center()))
            return s;
    return QGuiApplication::primaryScreen();
}

}  // namespace

QRect FittedFrameGeometry(const QRect& stored, const QRect& available)
{
    if (!available.isValid())
        return stored;
    if (!stored.isValid())
        return available;
    const int width = std::clamp(stored.width(), std::min(kMinWidth, available.width()), available.width());
    const int height =
        std::clamp(stored.height(), std::min(kMinHeight, available.height()), available.height());
    const int left =
        std::clamp(stored.left(), available.left(), available.left() + available.width() - width);
    const int top = std::clamp(stored.top(), available.top(), available.top() + available.height() - height);
    return QRect(left, top, width, height);
}

void RestoreFrameGeometry(QWidget* frame)
{
    bool maximized = false;
    const QRect stored = storedGeometry(maximized);
    QScreen* screen = screenFor(stored);
    const QRect available = screen ? screen->availableGeometry() : QRect();
    const QRect place = FittedFrameGeometry(stored, available);
    if (place.isValid())
        frame->setGeometry(place);
    // The first start fills the screen; afterwards the frame opens as the operator left it.
    if (maximized || !stored.isValid())
        frame->setWindowState(frame->windowState() | Qt::WindowMaximized);
}

void SaveFrameGeometry(const QWidget* frame)
{
    const bool maximized = frame->isMaximized();
    const QRect place =
        maximized && frame->normalGeometry().isValid() ? frame->normalGeometry() : frame->geometry();
    AppIniWrite(kLeft, QString::number(place.left()));
    AppIniWrite(kTop, QString::number(place.top()));
    AppIniWrite(kWidth, QString::number(place.width()));
    AppIniWrite(kHeight, QString::number(place.height()));
    AppIniWrite(kMaximized, maximized ? QStringLiteral("1") : QStringLiteral("0"));
}

}  // namespace td
