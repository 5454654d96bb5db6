#pragma once

#include "appearance/SystemColors.h"

#include <QPainterPath>
#include <QWidget>

/// Lies over everything in a translucent window and gives the whole its shape: cuts the corners,
/// draws the line inside the edge, and fades what was drawn below.
///
/// Fading what is painted, and not asking the window manager for it, works under every compositor
/// and leaves what is true untouched: keys and clicks go on below.
class PresentationLayer : public QWidget
{
    Q_OBJECT

public:
    PresentationLayer(qreal cornerRadius, QWidget *parent);

    void setColors(const SystemColors &colors);

    /// From 0, nothing to be seen, to 1.
    qreal opacity() const { return m_opacity; }
    void setOpacity(qreal opacity);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void paintLine(QPainter &painter, qreal inset, const QColor &color) const;

    qreal m_cornerRadius;
    qreal m_opacity = 1;
    SystemColors m_colors;
    QPainterPath m_corners; ///< What lies outside the rounded shape.
};
