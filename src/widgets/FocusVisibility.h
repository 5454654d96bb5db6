#pragma once

#include <Qt>

/// Whether the focus of a control is to be seen: not after a click, and as it was before when it
/// comes back from another window or from a menu.
class FocusVisibility
{
public:
    bool isVisible() const { return m_isVisible; }

    void focusIn(Qt::FocusReason reason);
    void focusOut();

private:
    bool m_isVisible = false;
    bool m_wasVisible = false; ///< When it last lost the focus.
};
