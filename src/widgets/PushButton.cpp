#include "widgets/PushButton.h"

#include "appearance/InterfaceFont.h"
#include "appearance/SymbolImage.h"
#include "widgets/ControlMetrics.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

using namespace ControlMetrics;

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

void PushButton::setEmphasis(Emphasis emphasis)
{
    m_emphasis = emphasis;
    update();
}

void PushButton::setPadding(int padding)
{
    m_padding = padding;
    updateGeometry();
}

void PushButton::setSymbol(const QString &name)
{
    m_symbol = name;
    updateGeometry();
    update();
}

void PushButton::setAlarming(bool isAlarming)
{
    m_isAlarming = isAlarming;
    update();
}

QSize PushButton::sizeHint() const
{
    int width = int(std::ceil(QFontMetricsF(textFont()).horizontalAdvance(text())));
    width += 2 * padding();
    width += m_symbol.isEmpty() ? 0 : kSymbolWidth + kSymbolGap;
    return {m_padding ? width : std::max(kLeastWidth, width), kControlHeight};
}

qreal PushButton::radius() const
{
    return kControlRadius;
}

int PushButton::padding() const
{
    return m_padding.value_or(kPadding);
}

void PushButton::draw(QPainter &painter) const
{
    QColor ink = m_isAlarming ? colors().systemRedColor : colors().labelColor;
    if (isChecked() || m_emphasis != Emphasis::Plain) {
        const bool isDestructive = m_emphasis == Emphasis::Destructive;
        const QColor fill = isDestructive ? colors().redFillColor : colors().accentFillColor;
        const QColor ground = isChecked() ? fill : pressable(fill);
        ink = Qt::white;
        drawGround(painter, ground, ground);
    } else {
        drawGround(painter, pressable(colors().controlColor), colors().controlLineColor);
    }
    QRect content = rect();
    if (!m_symbol.isEmpty()) {
        const QRect box(padding(), 0, kSymbolWidth, height());
        drawSymbol(painter, box, {m_symbol, kSymbolSize, SymbolWeight::Medium}, ink);
        content.setLeft(box.right() + 1 + kSymbolGap);
        content.setRight(width() - padding() - 1);
    }
    painter.setFont(textFont());
    painter.setPen(ink);
    drawTextLine(painter, content, text(), Qt::AlignHCenter);
}
