#include "settings/SettingsLabel.h"

#include "appearance/InterfaceFont.h"

#include <QPainter>

#include <cmath>

SettingsLabel::SettingsLabel(const SystemColors &colors, const TextStyle &style, Color color,
                             QWidget *parent)
    : QLabel(parent)
    , m_colors(colors)
    , m_style(style)
    , m_color(color)
{
    setTextFormat(Qt::PlainText);
}

QSize SettingsLabel::sizeHint() const
{
    const QFontMetricsF metrics(textFont());
    return {int(std::ceil(metrics.horizontalAdvance(text()))), int(std::ceil(metrics.height()))};
}

void SettingsLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setFont(textFont());
    painter.setPen(m_colors.*m_color);
    drawElided(painter, contentsRect(), text());
}

/// Not kept: the size of texts may change.
QFont SettingsLabel::textFont() const
{
    return interfaceFont(m_style.size, m_style.weight);
}
