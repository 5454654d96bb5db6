#include "window/GlassContainerView.h"

#include "widgets/AccessibleFactory.h"
#include "window/GlassContainerViewAccessible.h"
#include "window/WindowEdge.h"

#include <QChildEvent>
#include <QPainter>

using namespace Qt::StringLiterals;

GlassContainerView::GlassContainerView(const HistoryWindowStyle &style, QWidget *window)
    : QWidget(window)
    , m_style(style)
{
    installAccessible<GlassContainerView, GlassContainerViewAccessible>();
    setObjectName(style.isTranslucent ? u"glassContainerView"_s : u"glassBackgroundView"_s);
    if (style.isTranslucent)
        m_edge = new WindowEdge(style.cornerRadius, this);
}

void GlassContainerView::setColors(const SystemColors &colors)
{
    m_colors = colors;
    if (m_edge)
        m_edge->setColors(colors);
    update();
}

void GlassContainerView::setBackgroundAlpha(qreal alpha)
{
    m_backgroundAlpha = alpha;
    update();
}

void GlassContainerView::childEvent(QChildEvent *event)
{
    QWidget::childEvent(event);
    // Whatever is laid over the window gets its shape too.
    if (event->added() && m_edge)
        m_edge->raise();
}

void GlassContainerView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (m_style.isTranslucent) {
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.fillRect(rect(), withAlpha(m_colors.windowBackgroundColor, m_backgroundAlpha));
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    }
    paintOnGround(painter);
}

void GlassContainerView::resizeEvent(QResizeEvent *)
{
    if (m_edge)
        m_edge->setGeometry(rect());
}
