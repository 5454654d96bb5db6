#include "window/RowTransition.h"

#include "appearance/Easing.h"
#include "window/ClipboardTableView.h"
#include "window/HistoryListModel.h"
#include "window/RowLayout.h"

#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <cmath>
#include <utility>

using namespace std::chrono_literals;

namespace {

constexpr auto kTravelTime = 200ms;
constexpr auto kFadeTime = 250ms;

} // namespace

RowTransition::RowTransition(ClipboardTableView &view, const HistoryListModel &model,
                             Scheduler &scheduler, const Clock &clock)
    : m_view(view)
    , m_model(model)
    , m_animation(scheduler, clock)
    , m_fadeOuts(scheduler, clock, [&view] { view.viewport()->update(); })
{
}

RowTransition::~RowTransition() = default;

void RowTransition::setMotionReduced(bool isReduced)
{
    m_isMotionReduced = isReduced;
    if (!isReduced)
        return;
    m_fadeOuts.finishAll();
    finish();
}

void RowTransition::follow(const ListDifference &difference, const std::function<void()> &change)
{
    if (!m_view.isVisible()) {
        finish();
        change();
        return;
    }
    for (Departing &row : m_departing)
        row.opacity *= m_shareToGo;
    beginDeparture(difference.removedRows);
    const int oldScrollValue = m_view.verticalScrollBar()->value();
    change();
    moveFrom(difference, oldScrollValue);
    start();
}

void RowTransition::finish()
{
    m_animation.stop();
    m_starts.clear();
    m_departing.clear();
    m_shareToGo = 0;
    m_view.viewport()->update();
}

void RowTransition::fadeOut(const QUuid &id, std::function<void()> done)
{
    if (indexOfItem(m_model.items(), id) < 0 || !m_view.isVisible()) {
        done();
        return;
    }
    m_fadeOuts.start(id, shortened(kFadeTime), std::move(done));
}

RowTransition::Look RowTransition::look(const QUuid &id) const
{
    Look now = travelLook(id);
    now.opacity *= m_fadeOuts.opacity(id);
    return now;
}

RowTransition::Look RowTransition::travelLook(const QUuid &id) const
{
    const Look start = m_starts.value(id);
    return {start.offset * m_shareToGo, 1 - (1 - start.opacity) * m_shareToGo};
}

qreal RowTransition::reach() const
{
    qreal reach = 0;
    for (const Look &start : m_starts)
        reach = std::max(reach, std::abs(start.offset) * m_shareToGo);
    return reach;
}

void RowTransition::paintDeparting(QPainter &painter) const
{
    painter.save();
    for (const Departing &row : m_departing) {
        painter.setOpacity(row.opacity * m_shareToGo);
        painter.drawPixmap(QPointF(0, row.top - m_view.verticalScrollBar()->value()), row.picture);
    }
    painter.restore();
}

std::chrono::milliseconds RowTransition::shortened(std::chrono::milliseconds duration) const
{
    return m_isMotionReduced ? std::min(duration, kReducedFade) : duration;
}

/// Takes pictures of the rows that go, as they are seen now: the list forgets them.
void RowTransition::beginDeparture(const QList<qsizetype> &removedRows)
{
    const int scrollValue = m_view.verticalScrollBar()->value();
    const auto [first, last] = m_view.rowsInSight();
    for (int row = first; row <= last; ++row) {
        if (!std::ranges::binary_search(removedRows, row))
            continue;
        const Look now = look(m_model.items().at(row)->id);
        if (now.opacity > 0) {
            const qreal top = m_view.rowBox(row).top() + scrollValue + now.offset;
            m_departing.append({m_view.pictureOfRow(row), top, now.opacity});
        }
    }
}

/// Makes every row set out from where it was seen.
void RowTransition::moveFrom(const ListDifference &difference, int oldScrollValue)
{
    const int scrolled = m_view.verticalScrollBar()->value() - oldScrollValue;
    for (Departing &row : m_departing)
        row.top += scrolled;
    QHash<QUuid, Look> starts;
    const int height = m_view.viewport()->height();
    const auto [first, last] = m_view.rowsInSight(height);
    for (int row = first; row <= last; ++row) {
        const QUuid id = m_model.items().at(row)->id;
        if (std::ranges::binary_search(difference.insertedRows, row)) {
            starts.insert(id, {0, 0});
            continue;
        }
        Look start = travelLook(id);
        start.offset += qreal(oldRow(difference, row) - row) * kRowHeight + scrolled;
        // What comes from beyond the next page is not seen to come from anywhere.
        if (m_isMotionReduced || std::abs(start.offset) > height)
            start.offset = 0;
        if (start.offset != 0 || start.opacity < 1)
            starts.insert(id, start);
    }
    m_starts = starts;
}

void RowTransition::start()
{
    if (m_starts.isEmpty() && m_departing.isEmpty()) {
        finish();
        return;
    }
    m_animation.start({.from = 1, .to = 0, .duration = shortened(kTravelTime), .easing = easeOut},
                      [this](double left) {
                          m_shareToGo = left;
                          m_view.viewport()->update();
                      },
                      [this] { finish(); });
}
