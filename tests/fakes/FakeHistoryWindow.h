#pragma once

#include "window/ClipboardSearchWindowProtocol.h"

/// A history window that only remembers what it was told.
class FakeHistoryWindow : public ClipboardSearchWindowProtocol
{
public:
    /// What outlives the windows.
    struct State
    {
        ClipboardItemList items;
        int windowCount = 0;
        int showCount = 0;
        int hideCount = 0;
        int languageCount = 0;
        int pinButtonRefreshCount = 0;
        bool isVisible = false;
        bool isTakenOff = false;
        bool isHiding = false;
        bool isPinned = false;
    };

    explicit FakeHistoryWindow(State &state) : m_state(state) { ++m_state.windowCount; }

    bool isVisible() const override { return m_state.isVisible; }
    bool isSeen() const override { return m_state.isVisible && !m_state.isTakenOff; }
    bool isHideAnimationInFlight() const override { return m_state.isHiding; }

    void show() override
    {
        ++m_state.showCount;
        m_state.isVisible = true;
        m_state.isTakenOff = false;
        m_state.isHiding = false;
    }

    void hide() override
    {
        ++m_state.hideCount;
        m_state.isHiding = true;
    }

    /// The person presses the mouse somewhere else, as on a panel.
    void pressOutside()
    {
        if (m_state.isHiding || m_state.isPinned)
            return;
        onTurnedAway();
        hide();
    }

    void finishHiding()
    {
        m_state.isHiding = false;
        m_state.isVisible = false;
        onWindowHidden();
    }

    void updateItems(const ClipboardItemList &items) override { m_state.items = items; }
    void refreshLanguage() override { ++m_state.languageCount; }
    void refreshPinButtonVisibility() override { ++m_state.pinButtonRefreshCount; }

private:
    State &m_state;
};
