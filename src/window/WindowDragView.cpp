#include "window/WindowDragView.h"

#include "window/WindowFrame.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QScreen>

WindowDragView::WindowDragView(QWidget *parent)
    : QWidget(parent)
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
        WindowFrame::moved(m_initialWindowFrame, travel, screen->availableGeometry()));
}

void WindowDragView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        m_isDragging = false;
}
