#include "window/EdgeResizeView.h"

#include "platform/Workspace.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QScreen>

EdgeResizeView::EdgeResizeView(WindowFrame::Edge edge, const Workspace &workspace, QWidget *parent)
    : QWidget(parent)
    , m_workspace(workspace)
    , m_edge(edge)
{
    setCursor(Qt::SizeVerCursor);
}

void EdgeResizeView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    m_isResizing = true;
    m_initialMouseY = event->globalPosition().toPoint().y();
    m_initialWindowFrame = window()->geometry();
}

void EdgeResizeView::mouseMoveEvent(QMouseEvent *event)
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    if (!m_isResizing || !screen)
        return;
    const int travel = event->globalPosition().toPoint().y() - m_initialMouseY;
    window()->setGeometry(WindowFrame::resized(m_initialWindowFrame, m_edge, travel,
                                               m_workspace.availableGeometry(*screen)));
}

void EdgeResizeView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        m_isResizing = false;
}
