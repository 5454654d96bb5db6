#pragma once

#include "appearance/SystemColors.h"
#include "window/HistoryWindowStyle.h"

#include <QWidget>

class WindowEdge;

/// The ground of the history window with everything that stands on it, in the window's shape. It is
/// this that fades and grows when the window comes and goes; the window itself keeps still.
class GlassContainerView : public QWidget
{
    Q_OBJECT

public:
    GlassContainerView(const HistoryWindowStyle &style, QWidget *window);

    void setColors(const SystemColors &colors);

    /// How opaque the ground of a translucent window is.
    void setBackgroundAlpha(qreal alpha);

protected:
    /// Below the views.
    virtual void paintOnGround(QPainter &) const {}

    void childEvent(QChildEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    HistoryWindowStyle m_style;
    SystemColors m_colors;
    qreal m_backgroundAlpha = 1;
    WindowEdge *m_edge = nullptr; ///< Only with translucency; otherwise the window itself is cut.
};
