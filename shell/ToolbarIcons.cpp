#include "shell/ToolbarIcons.h"
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <cmath>
#include <numbers>

namespace td {

namespace {

constexpr int kSize = 48;  // drawn large, scaled down by the toolbar

QPixmap canvas()
{
    QPixmap p(kSize, kSize);
    p.fill(Qt::transparent);
    return p;
}

QPainterPath gearOutline(QPointF centre, double outer, double inner, int teeth)
{
    QPainterPath path;
    const double step = 2 * std::numbers::pi / teeth;
    for (int i = 0; i < teeth; ++i) {
        const double a = i * step;
        const double corners[] = {a - step * 0.22, a - step * 0.12, a + step * 0.12, a + step * 0.22};
        const double radii[] = {inner, outer, outer, inner};
        for (int k = 0; k < 4; ++k) {
            const QPointF point(centre.x() + radii[k] * std::cos(corners[k]),
                                centre.y() + radii[k] * std::sin(corners[k]));
            if (i == 0 && k == 0)
                path.moveTo(point);
            else
                path.lineTo(point);
        }
    }
    path.closeSubpath();
    return path;
}

}  // namespace

QIcon HelpIcon()
{
    QPixmap p = canvas();
    QPainter painter(&p);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(0x1c, 0x4f, 0x9c), 3));
    painter.setBrush(QColor(0x35, 0x84, 0xe4));
    painter.drawEllipse(QRectF(3, 3, kSize - 6, kSize - 6));
    QFont font = painter.font();
    font.setBold(true);
    font.setPixelSize(kSize * 2 / 3);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(QRect(0, 0, kSize, kSize), Qt::AlignCenter, QStringLiteral("?"));
    return QIcon(p);
}

QIcon OptionsIcon()
{
    QPixmap p = canvas();
    QPainter painter(&p);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPointF centre(kSize / 2.0, kSize / 2.0);
    QPainterPath gear = gearOutline(centre, kSize * 0.46, kSize * 0.34, 8);
    QPainterPath hole;
    hole.addEllipse(centre, kSize * 0.13, kSize * 0.13);
    painter.setPen(QPen(QColor(0x3d, 0x3d, 0x3d), 2));
    painter.setBrush(QColor(0x9a, 0x9a, 0x9a));
    painter.drawPath(gear.subtracted(hole));
    return QIcon(p);
}

QIcon ToolbarIcon(const char* themeName, QStyle::StandardPixmap fallback, const QStyle* style)
{
    const QString name = QString::fromLatin1(themeName);
    if (QIcon::hasThemeIcon(name))
        return QIcon::fromTheme(name);
    if (name == u"help-contents")
        return HelpIcon();
    if (name == u"preferences-system")
        return OptionsIcon();
    return style->standardIcon(fallback);
}

}  // namespace td
