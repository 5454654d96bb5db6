#pragma once

#include "window/WindowFrame.h"

#include <QWidget>

class Workspace;

/// A strip at the upper or lower end of the window by which its height is changed.
class EdgeResizeView : public QWidget
{
    Q_OBJECT

public:
    static constexpr int kHeight = 8;

    /// \a workspace must outlive the view.
    EdgeResizeView(WindowFrame::Edge edge, const Workspace &workspace, QWidget *parent);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    const Workspace &m_workspace;
    WindowFrame::Edge m_edge;
    bool m_isResizing = false;
    int m_initialMouseY = 0;
    QRect m_initialWindowFrame;
};
