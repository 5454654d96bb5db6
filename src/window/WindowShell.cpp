#include "window/WindowShell.h"

#include "widgets/AccessibleFactory.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>
#include <QWindow>

#include <qpa/qwindowsysteminterface.h>

#include <utility>

WindowShell::WindowShell(const HistoryWindowStyle &style)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint)
    , m_style(style)
{
    installAccessible<WindowShell, RoleAccessible<QAccessible::Window>>();
    setAttribute(Qt::WA_TranslucentBackground, style.isTranslucent);
    setAttribute(Qt::WA_QuitOnClose, false);
}

void WindowShell::setContent(QWidget &content)
{
    m_content = &content;
    content.setGeometry(rect());
}

void WindowShell::setColors(const SystemColors &colors)
{
    m_colors = colors;
    update();
}

void WindowShell::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() != QEvent::ActivationChange)
        return;
    // Who gives the focus has done with framing; from here on, moves are meant.
    m_placeWhenShown.reset();
    if (!isActiveWindow())
        emit deactivated();
}

void WindowShell::closeEvent(QCloseEvent *event)
{
    emit closeRequested();
    event->setAccepted(!isVisible());
}

bool WindowShell::event(QEvent *event)
{
    if (event->type() == QEvent::ApplicationPaletteChange)
        emit desktopColorsChanged();
    return QWidget::event(event);
}

void WindowShell::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    // The desktop tells of it later. A window that is shown again before would be taken to have had the
    // focus all the while, and nothing in it would be given the keys.
    if (QGuiApplication::focusWindow() == windowHandle())
        QWindowSystemInterface::handleWindowActivated<
            QWindowSystemInterface::SynchronousDelivery>(nullptr);
}

void WindowShell::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier)
        emit cancelRequested();
    else
        QWidget::keyPressEvent(event);
}

void WindowShell::moveEvent(QMoveEvent *event)
{
    QWidget::moveEvent(event);
    const auto placeWhenShown = std::exchange(m_placeWhenShown, std::nullopt);
    // A window manager that puts its frame around the window tells of a place within the frame, and
    // keeps silent once the frame stands where the window was to be. Asking for the place once more
    // makes it tell the truth (ICCCM 4.1.5).
    if (placeWhenShown && event->spontaneous() && pos() != *placeWhenShown)
        move(*placeWhenShown);
}

void WindowShell::paintEvent(QPaintEvent *event)
{
    // Without translucency the ground keeps still while what stands on it comes and goes.
    if (m_style.isTranslucent)
        return;
    QPainter painter(this);
    painter.fillRect(event->rect(), m_colors.windowBackgroundColor);
    if (m_colors.isHighContrast)
        paintStrongEdge(painter);
}

void WindowShell::resizeEvent(QResizeEvent *)
{
    if (m_content)
        m_content->setGeometry(rect());
    cutShape();
}

/// A window whose corners are cut has no line, unless its edge must be seen on any ground.
void WindowShell::paintStrongEdge(QPainter &painter) const
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), m_colors.windowLineColor);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_colors.windowBackgroundColor);
    const qreal radius = m_style.cornerRadius - kStrongLine;
    painter.drawRoundedRect(
        QRectF(rect()).adjusted(kStrongLine, kStrongLine, -kStrongLine, -kStrongLine), radius,
        radius);
}

void WindowShell::cutShape()
{
    if (m_style.isTranslucent)
        return;
    QPainterPath shape;
    shape.addRoundedRect(rect(), m_style.cornerRadius, m_style.cornerRadius);
    setMask(QRegion(shape.toFillPolygon().toPolygon()));
}

void WindowShell::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (!event->spontaneous())
        m_placeWhenShown = pos();
}
