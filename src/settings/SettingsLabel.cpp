#include "settings/SettingsLabel.h"

#include "appearance/InterfaceFont.h"

#include <QPainter>

#include <cmath>

SettingsLabel::SettingsLabel(const SystemColors &colors, const QFont &font, Color color,
                             QWidget *parent)
    : QLabel(parent)
    , m_colors(colors)
    , m_font(font)
    , m_color(color)
{
    setTextFormat(Qt::PlainText);
}

QSize SettingsLabel::sizeHint() const
{
    const QFontMetricsF metrics(m_font);
    return {int(std::ceil(metrics.horizontalAdvance(text()))), int(std::ceil(metrics.height()))};
}

void SettingsLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setFont(m_font);
    painter.setPen(m_colors.*m_color);
    drawElided(painter, contentsRect(), text());
}
