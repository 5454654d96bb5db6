#include "window/OverlayScroller.h"

#include "appearance/RoundedBox.h"
#include "platform/Scheduler.h"

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

OverlayScroller::OverlayScroller(Scheduler &scheduler, const QScrollBar &scrollBar, QWidget *parent)
    : QWidget(parent)
    , m_scheduler(scheduler)
    , m_scrollBar(scrollBar)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
    connect(&scrollBar, &QScrollBar::valueChanged, this, &OverlayScroller::flash);
}

OverlayScroller::~OverlayScroller() = default;

void OverlayScroller::setColors(const SystemColors &colors)
{
    m_color = withAlpha(colors.labelColor, kAlpha);
    update();
}

void OverlayScroller::paintEvent(QPaintEvent *)
{
    const qreal room = height() - 2 * kMargin;
    const qreal content = m_scrollBar.maximum() + m_scrollBar.pageStep();
    if (content <= 0 || room <= 0)
        return;
    const qreal length
        = std::min(room, std::max(kLeastLength, room * m_scrollBar.pageStep() / content));
    const qreal share = m_scrollBar.maximum() > 0
        ? qreal(m_scrollBar.value()) / m_scrollBar.maximum() : 0;
    QPainter painter(this);
    fillRoundedBox(painter,
                   QRectF(width() - kMargin - kThickness, kMargin + (room - length) * share,
                          kThickness, length),
                   kThickness / 2, m_color);
}

void OverlayScroller::flash()
{
    show();
    update();
    m_hiding = m_scheduler.after(kShownFor, [this] { hide(); });
}
