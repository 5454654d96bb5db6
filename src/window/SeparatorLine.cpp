#include "window/SeparatorLine.h"

#include <QPainter>

SeparatorLine::SeparatorLine(QWidget *parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void SeparatorLine::setColor(const QColor &color)
{
    m_color = color;
    update();
}

void SeparatorLine::paintEvent(QPaintEvent *)
{
    QPainter(this).fillRect(rect(), m_color);
}
