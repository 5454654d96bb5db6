#pragma once

#include "appearance/SystemColors.h"

#include <QWidget>

#include <memory>
#include <optional>

class QScrollBar;
class ScheduledWork;
class Scheduler;

/// Shows where a list stands, over its content: while it scrolls and a moment longer. As long as it
/// is seen the mouse can drag it; it does not go while the pointer is on it.
class OverlayScroller : public QWidget
{
    Q_OBJECT

public:
    /// The scroller and the room that it keeps to the edges.
    static constexpr int kLaneWidth = 8;

    /// Follows \a scrollBar. Both it and \a scheduler must outlive the scroller.
    OverlayScroller(Scheduler &scheduler, QScrollBar &scrollBar, QWidget *parent);
    ~OverlayScroller() override;

    void setColors(const SystemColors &colors);

    /// Shows it for a moment, if there is something to scroll.
    void flash();

protected:
    void leaveEvent(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void handleRangeChange();
    void handleScrolling();
    void hideSoon();
    bool isPointerOnIt() const;
    qreal room() const;
    QRectF knob() const;

    Scheduler &m_scheduler;
    QScrollBar &m_scrollBar;
    QColor m_color;
    bool m_isRangeChanging = false;
    std::optional<qreal> m_grip; ///< Of a drag: how far below the knob's upper end it holds.
    std::unique_ptr<ScheduledWork> m_hiding;
};
