#include "settings/SettingsSwitch.h"

#include "appearance/RoundedBox.h"

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
    fillRoundedBox(painter, rect(), radius(),
                   isChecked() ? colors().accentFillColor : colors().switchOffColor);
    const qreal side = height() - 2 * kKnobGap;
    const qreal left = isChecked() ? width() - kKnobGap - side : kKnobGap;
    fillRoundedBox(painter, QRectF(left, kKnobGap, side, side), side / 2, Qt::white);
}
