#include "window/PresentationLayer.h"

#include <QGraphicsEffect>
#include <QPainter>
#include <QWidget>

class PresentationLayer::Effect : public QGraphicsEffect
{
public:
    void setPresentation(const Presentation &presentation)
    {
        m_presentation = presentation;
        update();
    }

protected:
    void draw(QPainter *painter) override
    {
        QPoint offset;
        const QPixmap picture
            = sourcePixmap(Qt::LogicalCoordinates, &offset, PadToTransparentBorder);
        const QPointF centre = sourceBoundingRect().center();
        painter->setOpacity(m_presentation.opacity);
        painter->setRenderHint(QPainter::SmoothPixmapTransform);
        painter->translate(centre);
        painter->scale(m_presentation.scale, m_presentation.scale);
        painter->translate(-centre);
        painter->drawPixmap(offset, picture);
    }

private:
    Presentation m_presentation;
};

PresentationLayer::PresentationLayer(QWidget &view)
    : m_view(view)
{
}

PresentationLayer::~PresentationLayer() = default;

void PresentationLayer::setPresentation(const Presentation &presentation)
{
    if (presentation == m_presentation)
        return;
    m_presentation = presentation;
    if (presentation == Presentation()) {
        m_view.setGraphicsEffect(nullptr);
        m_effect = nullptr;
        return;
    }
    if (!m_effect) {
        m_effect = new Effect;
        m_view.setGraphicsEffect(m_effect);
    }
    m_effect->setPresentation(presentation);
}
