#pragma once

#include "window/WindowFrame.h"

#include <QWidget>

/// A strip at the upper or lower end of the window by which its height is changed.
class EdgeResizeView : public QWidget
{
    Q_OBJECT

public:
    static constexpr int kHeight = 8;

    EdgeResizeView(WindowFrame::Edge edge, QWidget *parent);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    WindowFrame::Edge m_edge;
    bool m_isResizing = false;
    int m_initialMouseY = 0;
    QRect m_initialWindowFrame;
};
