#include "settings/SettingsButton.h"

#include "appearance/InterfaceFont.h"
#include "appearance/SymbolImage.h"
#include "settings/SettingsMetrics.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

using namespace SettingsMetrics;

namespace {

constexpr int kLeastWidth = 56;
constexpr int kPadding = 12;
constexpr int kSymbolSize = 13;
constexpr int kSymbolWidth = 16;
constexpr int kSymbolGap = 6;

QFont textFont()
{
    return interfaceFont(kControlFontSize, QFont::Medium);
}

} // namespace

void SettingsButton::setSymbol(const QString &name)
{
    m_symbol = name;
    updateGeometry();
    update();
}

void SettingsButton::setAlarming(bool isAlarming)
{
    m_isAlarming = isAlarming;
    update();
}

QSize SettingsButton::sizeHint() const
{
    int width = int(std::ceil(QFontMetricsF(textFont()).horizontalAdvance(text())));
    width += 2 * kPadding + (m_symbol.isEmpty() ? 0 : kSymbolWidth + kSymbolGap);
    return {std::max(kLeastWidth, width), kControlHeight};
}

qreal SettingsButton::radius() const
{
    return kControlRadius;
}

void SettingsButton::draw(QPainter &painter) const
{
    QColor ink = m_isAlarming ? colors().systemRedColor : colors().labelColor;
    if (isChecked()) {
        ink = Qt::white;
        drawGround(painter, colors().accentFillColor, colors().accentFillColor);
    } else {
        drawGround(painter, pressable(colors().controlColor), colors().controlLineColor);
    }
    QRect content = rect();
    if (!m_symbol.isEmpty()) {
        const QRect box(kPadding, 0, kSymbolWidth, height());
        drawSymbol(painter, box, {m_symbol, kSymbolSize, SymbolWeight::Medium}, ink);
        content.setLeft(box.right() + 1 + kSymbolGap);
        content.setRight(width() - kPadding - 1);
    }
    painter.setFont(textFont());
    painter.setPen(ink);
    drawTextLine(painter, content, text(), Qt::AlignHCenter);
}
