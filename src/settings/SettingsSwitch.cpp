#include "settings/SettingsSwitch.h"

#include <QPainter>

namespace {

constexpr QSize kSize(38, 22);
constexpr qreal kKnobGap = 2;

} // namespace

SettingsSwitch::SettingsSwitch(const SystemColors &colors, QWidget *parent)
    : DrawnControl(colors, parent)
{
    setCheckable(true);
}

QSize SettingsSwitch::sizeHint() const
{
    return kSize;
}

qreal SettingsSwitch::radius() const
{
    return kSize.height() / 2.0;
}

void SettingsSwitch::draw(QPainter &painter) const
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(isChecked() ? colors().accentFillColor : colors().switchOffColor);
    painter.drawRoundedRect(rect(), radius(), radius());
    const qreal side = height() - 2 * kKnobGap;
    const qreal left = isChecked() ? width() - kKnobGap - side : kKnobGap;
    painter.setBrush(Qt::white);
    painter.drawEllipse(QRectF(left, kKnobGap, side, side));
}
