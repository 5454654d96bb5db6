#include "window/BlurBehind.h"

#include "platform/DesktopAppearance.h"

#include <QEvent>
#include <QPainterPath>
#include <QWidget>

BlurBehind::BlurBehind(QWidget &window, qreal cornerRadius, DesktopAppearance &appearance)
    : m_window(window)
    , m_cornerRadius(cornerRadius)
    , m_appearance(appearance)
{
    m_window.installEventFilter(this);
}

BlurBehind::~BlurBehind()
{
    setWanted(false); // The window may be kept.
}

void BlurBehind::setWanted(bool isWanted)
{
    if (isWanted == m_isWanted)
        return;
    m_isWanted = isWanted;
    tell();
}

bool BlurBehind::eventFilter(QObject *watched, QEvent *event)
{
    // The window exists when it is told of being shown, and is not on the screen yet.
    const bool isNews = event->type() == QEvent::Show || event->type() == QEvent::Resize;
    if (isNews && m_isWanted)
        tell();
    return QObject::eventFilter(watched, event);
}

void BlurBehind::tell()
{
    if (!m_window.windowHandle())
        return;
    QPainterPath shape;
    if (m_isWanted)
        shape.addRoundedRect(m_window.rect(), m_cornerRadius, m_cornerRadius);
    m_appearance.blurBehind(m_window.windowHandle(), shape);
}
