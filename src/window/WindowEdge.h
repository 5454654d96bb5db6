#pragma once

#include "appearance/SystemColors.h"

#include <QPainterPath>
#include <QWidget>

/// Lies over everything in a translucent window and gives the whole its shape: cuts the corners and
/// draws the line inside the edge.
class WindowEdge : public QWidget
{
    Q_OBJECT

public:
    WindowEdge(qreal cornerRadius, QWidget *parent);

    void setColors(const SystemColors &colors);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    qreal m_cornerRadius;
    SystemColors m_colors;
    QPainterPath m_corners; ///< What lies outside the rounded shape.
};
