#pragma once

#include <QWidget>

class Workspace;

/// The ground of the window's head, by which the window is moved.
class WindowDragView : public QWidget
{
    Q_OBJECT

public:
    static constexpr int kHeight = 60;

    /// \a workspace must outlive the view.
    WindowDragView(const Workspace &workspace, QWidget *parent);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    const Workspace &m_workspace;
    bool m_isDragging = false;
    QPoint m_initialMouseLocation;
    QRect m_initialWindowFrame;
};
