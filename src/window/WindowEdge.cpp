#include "window/WindowEdge.h"

#include "appearance/DevicePixels.h"
#include "appearance/RoundedBox.h"

#include <QPaintEvent>
#include <QPainter>

#include <cmath>

WindowEdge::WindowEdge(qreal cornerRadius, QWidget *parent)
    : QWidget(parent)
    , m_cornerRadius(cornerRadius)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void WindowEdge::setColors(const SystemColors &colors)
{
    m_colors = colors;
    update();
}

void WindowEdge::paintEvent(QPaintEvent *event)
{
    const int edge = int(std::ceil(m_cornerRadius));
    if (rect().adjusted(edge, edge, -edge, -edge).contains(event->rect()))
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.fillPath(m_corners, Qt::black);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    lineRoundedBox(painter, rect(), m_cornerRadius, m_colors.windowLineColor,
                   m_colors.isHighContrast ? kStrongLine : 1);
    if (m_colors.windowRimColor.alpha() > 0) {
        const qreal line = lineThickness(painter, 1);
        lineRoundedBox(painter, QRectF(rect()).adjusted(line, line, -line, -line),
                       m_cornerRadius - line, m_colors.windowRimColor);
    }
}

void WindowEdge::resizeEvent(QResizeEvent *)
{
    QPainterPath whole;
    whole.addRect(rect());
    QPainterPath shape;
    shape.addRoundedRect(rect(), m_cornerRadius, m_cornerRadius);
    m_corners = whole.subtracted(shape);
}
