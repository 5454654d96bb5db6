#include "window/WindowDragView.h"

#include "platform/Workspace.h"
#include "window/WindowFrame.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QScreen>

WindowDragView::WindowDragView(const Workspace &workspace, QWidget *parent)
    : QWidget(parent)
    , m_workspace(workspace)
{
}

void WindowDragView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    m_isDragging = true;
    m_initialMouseLocation = event->globalPosition().toPoint();
    m_initialWindowFrame = window()->geometry();
}

void WindowDragView::mouseMoveEvent(QMouseEvent *event)
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    if (!m_isDragging || !screen)
        return;
    const QPoint travel = event->globalPosition().toPoint() - m_initialMouseLocation;
    window()->setGeometry(
        WindowFrame::moved(m_initialWindowFrame, travel, m_workspace.availableGeometry(*screen)));
}

void WindowDragView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        m_isDragging = false;
}
