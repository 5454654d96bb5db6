#include "window/SeparatorLine.h"

#include "appearance/Hairline.h"

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
    QPainter painter(this);
    drawHairline(painter, rect(), m_color);
}
