#include "window/PresentationLayer.h"

#include <QPaintEvent>
#include <QPainter>

#include <cmath>

PresentationLayer::PresentationLayer(qreal cornerRadius, QWidget *parent)
    : QWidget(parent)
    , m_cornerRadius(cornerRadius)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void PresentationLayer::setColors(const SystemColors &colors)
{
    m_colors = colors;
    update();
}

void PresentationLayer::setOpacity(qreal opacity)
{
    if (opacity == m_opacity)
        return;
    m_opacity = opacity;
    update();
}

void PresentationLayer::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    const int edge = int(std::ceil(m_cornerRadius));
    if (!rect().adjusted(edge, edge, -edge, -edge).contains(event->rect())) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
        painter.fillPath(m_corners, Qt::black);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        paintLine(painter, 0.5, m_colors.windowLineColor);
        if (m_colors.windowRimColor.alpha() > 0)
            paintLine(painter, 1.5, m_colors.windowRimColor);
    }
    if (m_opacity < 1) {
        painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
        painter.fillRect(rect(), withAlpha(Qt::black, m_opacity));
    }
}

void PresentationLayer::resizeEvent(QResizeEvent *)
{
    QPainterPath whole;
    whole.addRect(rect());
    QPainterPath shape;
    shape.addRoundedRect(rect(), m_cornerRadius, m_cornerRadius);
    m_corners = whole.subtracted(shape);
}

void PresentationLayer::paintLine(QPainter &painter, qreal inset, const QColor &color) const
{
    painter.setPen(color);
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset),
                            m_cornerRadius - inset, m_cornerRadius - inset);
}
