#include "window/OverlayScroller.h"

#include "appearance/RoundedBox.h"
#include "platform/Scheduler.h"

#include <QCursor>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>

using namespace std::chrono_literals;

namespace {

constexpr auto kShownFor = 800ms;
constexpr qreal kThickness = 4;
constexpr qreal kMargin = 2;
constexpr qreal kLeastLength = 28;
constexpr qreal kAlpha = 0.32;

} // namespace

OverlayScroller::OverlayScroller(Scheduler &scheduler, QScrollBar &scrollBar, QWidget *parent)
    : QWidget(parent)
    , m_scheduler(scheduler)
    , m_scrollBar(scrollBar)
{
    setCursor(Qt::ArrowCursor);
    hide();
    connect(&scrollBar, &QScrollBar::rangeChanged, this, &OverlayScroller::handleRangeChange);
    connect(&scrollBar, &QScrollBar::valueChanged, this, &OverlayScroller::handleScrolling);
}

OverlayScroller::~OverlayScroller() = default;

void OverlayScroller::setColors(const SystemColors &colors)
{
    m_color = withAlpha(colors.labelColor, kAlpha);
    update();
}

void OverlayScroller::flash()
{
    if (m_scrollBar.maximum() <= m_scrollBar.minimum())
        return;
    show();
    update();
    hideSoon();
}

void OverlayScroller::leaveEvent(QEvent *)
{
    hideSoon();
}

void OverlayScroller::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    const qreal y = event->position().y();
    const QRectF box = knob();
    if (y < box.top())
        m_scrollBar.triggerAction(QScrollBar::SliderPageStepSub);
    else if (y >= box.bottom())
        m_scrollBar.triggerAction(QScrollBar::SliderPageStepAdd);
    else
        m_grip = y - box.top();
}

void OverlayScroller::mouseMoveEvent(QMouseEvent *event)
{
    const qreal way = room() - knob().height();
    if (!m_grip || way <= 0)
        return;
    const qreal share = (event->position().y() - *m_grip - kMargin) / way;
    m_scrollBar.setValue(qRound(share * m_scrollBar.maximum()));
}

void OverlayScroller::mouseReleaseEvent(QMouseEvent *)
{
    m_grip.reset();
    hideSoon();
}

void OverlayScroller::paintEvent(QPaintEvent *)
{
    if (room() <= 0)
        return;
    QPainter painter(this);
    fillRoundedBox(painter, knob(), kThickness / 2, m_color);
}

/// What the list scrolls as entries come and go keeps the rows where they are; nobody scrolls then.
void OverlayScroller::handleRangeChange()
{
    m_isRangeChanging = true;
    QMetaObject::invokeMethod(this, [this] { m_isRangeChanging = false; }, Qt::QueuedConnection);
    update();
}

void OverlayScroller::handleScrolling()
{
    update();
    if (!m_isRangeChanging)
        flash();
}

void OverlayScroller::hideSoon()
{
    m_hiding = m_scheduler.after(kShownFor, [this] {
        if (m_grip || isPointerOnIt())
            hideSoon();
        else
            hide();
    });
}

/// Asked of the pointer: what comes in sight below it gets no notice that can be relied on.
bool OverlayScroller::isPointerOnIt() const
{
    return rect().contains(mapFromGlobal(QCursor::pos()));
}

qreal OverlayScroller::room() const
{
    return height() - 2 * kMargin;
}

QRectF OverlayScroller::knob() const
{
    const qreal most = m_scrollBar.maximum();
    const qreal page = m_scrollBar.pageStep();
    const qreal length = std::min(room(), std::max(kLeastLength, room() * page / (most + page)));
    const qreal share = most > 0 ? m_scrollBar.value() / most : 0;
    return {width() - kMargin - kThickness, kMargin + (room() - length) * share, kThickness, length};
}
