#pragma once

#include "window/HistoryRowDelegate.h"
#include "window/StarPop.h"

#include <QPersistentModelIndex>

#include <functional>
#include <optional>

class ClipboardTableView;

/// The stars of the rows, each a button of its own within its row: what the mouse does to them, and
/// how they are seen meanwhile. What a click on one means is up to others.
class RowStars
{
public:
    /// All of them must outlive the stars.
    RowStars(ClipboardTableView &view, Scheduler &scheduler, const Clock &clock);

    void setMotionReduced(bool isReduced) { m_pop.setMotionReduced(isReduced); }

    /// Whether \a position in the viewport is on a star.
    bool areAt(QPoint position) const { return rowAt(position) >= 0; }

    // What the mouse does in the viewport, with its left button. False if it is not for a star to
    // deal with.
    bool press(QPoint position);
    bool move(QPoint position, Qt::MouseButtons buttons);
    bool release(QPoint position);
    void leave() { setHoveredRow(-1); }

    /// As a click on the star of \a row does.
    void click(int row);

    /// Shows every star in its own size.
    void finishPops() { m_pop.finishAll(); }

    RowState::Star state(int row) const;
    double scale(const QUuid &id) const { return m_pop.scale(id); }

    std::function<void(int row)> onClicked;

private:
    /// -1 if there is none.
    int rowAt(QPoint position) const;
    void setHoveredRow(int row);
    void update(int row);

    ClipboardTableView &m_view;
    StarPop m_pop;
    int m_hoveredRow = -1;
    /// Held while the button is down; the entry may move or go meanwhile.
    std::optional<QPersistentModelIndex> m_pressed;
};
