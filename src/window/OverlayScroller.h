#pragma once

#include "appearance/SystemColors.h"

#include <QWidget>

#include <memory>

class QScrollBar;
class ScheduledWork;
class Scheduler;

/// Shows where a list stands, over its content: while it scrolls and a moment longer.
class OverlayScroller : public QWidget
{
    Q_OBJECT

public:
    /// The scroller and the room that it keeps to the edges.
    static constexpr int kLaneWidth = 8;

    /// Follows \a scrollBar. Both it and \a scheduler must outlive the scroller.
    OverlayScroller(Scheduler &scheduler, const QScrollBar &scrollBar, QWidget *parent);
    ~OverlayScroller() override;

    void setColors(const SystemColors &colors);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void flash();

    Scheduler &m_scheduler;
    const QScrollBar &m_scrollBar;
    QColor m_color;
    std::unique_ptr<ScheduledWork> m_hiding;
};
