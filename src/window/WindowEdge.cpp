#include "window/WindowEdge.h"

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
    paintLine(painter, 0, m_colors.isHighContrast ? kStrongLine : 1, m_colors.windowLineColor);
    if (m_colors.windowRimColor.alpha() > 0)
        paintLine(painter, 1, 1, m_colors.windowRimColor);
}

void WindowEdge::resizeEvent(QResizeEvent *)
{
    QPainterPath whole;
    whole.addRect(rect());
    QPainterPath shape;
    shape.addRoundedRect(rect(), m_cornerRadius, m_cornerRadius);
    m_corners = whole.subtracted(shape);
}

/// \a distance lies between the line and the edge.
void WindowEdge::paintLine(QPainter &painter, qreal distance, qreal width,
                           const QColor &color) const
{
    const qreal inset = distance + width / 2;
    painter.setPen(QPen(color, width));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset),
                            m_cornerRadius - inset, m_cornerRadius - inset);
}
