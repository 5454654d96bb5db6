#include "window/FilterButton.h"

#include "appearance/InterfaceFont.h"

#include <QPainter>

#include <cmath>

namespace {

constexpr int kTitleSize = 12;
constexpr int kPadding = 12;
constexpr qreal kHoverAlpha = 0.05;
constexpr qreal kPressedAlpha = 0.84;
constexpr qreal kSelectedLineAlpha = 0.9;

QFont titleFont()
{
    return interfaceFont(kTitleSize, QFont::Medium);
}

} // namespace

FilterButton::FilterButton(QWidget *parent)
    : QAbstractButton(parent)
{
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::NoFocus);
}

void FilterButton::setColors(const SystemColors &colors)
{
    m_colors = colors;
    update();
}

void FilterButton::setSelected(bool isSelected)
{
    m_isSelected = isSelected;
    update();
}

int FilterButton::naturalWidth() const
{
    return int(std::ceil(QFontMetricsF(titleFont()).horizontalAdvance(text()))) + 2 * kPadding;
}

void FilterButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isDown() ? kPressedAlpha : 1);

    QColor ground = Qt::transparent;
    if (m_isSelected)
        ground = m_colors.accentFillColor;
    else if (underMouse())
        ground = withAlpha(m_colors.labelColor, kHoverAlpha);
    painter.setBrush(ground);
    painter.setPen(m_isSelected ? withAlpha(m_colors.accentFillColor, kSelectedLineAlpha)
                                : m_colors.pillLineColor);
    const QRectF outline = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.drawRoundedRect(outline, outline.height() / 2, outline.height() / 2);

    painter.setFont(titleFont());
    painter.setPen(m_isSelected ? QColor(Qt::white) : m_colors.secondaryLabelColor);
    const QRectF title = QRectF(rect()).adjusted(kPadding, 0, -kPadding, 0);
    const QFontMetricsF metrics(painter.font(), this);
    drawTextLine(painter, title, metrics.elidedText(text(), Qt::ElideRight, title.width() + 1));
}
