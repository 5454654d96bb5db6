#include "widgets/FocusVisibility.h"

void FocusVisibility::focusIn(Qt::FocusReason reason)
{
    switch (reason) {
    case Qt::MouseFocusReason: m_isVisible = false; break;
    case Qt::ActiveWindowFocusReason:
    case Qt::PopupFocusReason:
    case Qt::MenuBarFocusReason: m_isVisible = m_wasVisible; break;
    // By the keyboard, or by a program that a person uses instead of it.
    default: m_isVisible = true; break;
    }
}

void FocusVisibility::focusOut()
{
    m_wasVisible = m_isVisible;
    m_isVisible = false;
}
