#pragma once

#include "window/ListDifference.h"
#include "window/RowFadeOuts.h"

#include <QHash>
#include <QPixmap>

#include <functional>

class ClipboardTableView;
class HistoryListModel;
class QPainter;

/// Rows on their way: those that come fade in, those that go fade out, the others slide to their
/// new places. What is painted follows behind; what is true, and where a click lands, changes at
/// once. A further change goes on from what is seen.
///
/// None of it happens while the view is hidden.
class RowTransition
{
public:
    /// How a row is painted now.
    struct Look
    {
        qreal offset = 0; ///< Downwards, from the row's own place.
        qreal opacity = 1;
    };

    /// All must outlive the transition; \a model is the view's.
    RowTransition(ClipboardTableView &view, const HistoryListModel &model, Scheduler &scheduler,
                  const Clock &clock);
    ~RowTransition();

    /// Whether rows do without sliding, and fade but briefly, from the next change on. If so, rows
    /// that are on their way arrive at once, and those that fadeOut() fades are gone.
    void setMotionReduced(bool isReduced);

    /// Calls \a change, which is to carry \a difference out, and lets what is seen follow.
    void follow(const ListDifference &difference, const std::function<void()> &change);

    /// Puts every row in its place at once. What fadeOut() began goes on.
    void finish();

    /// Fades the row of an entry, which stays in the list, and then calls \a done, which is to
    /// remove it; at once if it is not listed, or while the view is hidden. Out of sight it takes as
    /// long as in sight: a key that is held must not run through what nobody sees. Never calls \a done
    /// once the transition is gone.
    void fadeOut(const QUuid &id, std::function<void()> done);

    Look look(const QUuid &id) const;

    /// Rows so far beside the visible ones may be seen as well.
    qreal reach() const;

    /// Paints the rows that are no longer in the list.
    void paintDeparting(QPainter &painter) const;

private:
    struct Departing
    {
        QPixmap picture;
        qreal top; ///< In the content.
        qreal opacity;
    };

    std::chrono::milliseconds shortened(std::chrono::milliseconds duration) const;
    Look travelLook(const QUuid &id) const;
    void beginDeparture(const QList<qsizetype> &removedRows);
    void moveFrom(const ListDifference &difference, int oldScrollValue);
    void start();

    ClipboardTableView &m_view;
    const HistoryListModel &m_model;
    ValueAnimation m_animation;
    bool m_isMotionReduced = false;
    qreal m_shareToGo = 0; ///< Of the way.
    QHash<QUuid, Look> m_starts; ///< How the rows looked that are on their way, when they set out.
    QList<Departing> m_departing;
    RowFadeOuts m_fadeOuts;
};
