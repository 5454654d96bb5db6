#pragma once

#include "settings/SettingsWindowProtocol.h"

/// A settings window that only remembers what it was told.
class FakeSettingsWindow : public SettingsWindowProtocol
{
public:
    /// What outlives the windows.
    struct State
    {
        int windowCount = 0; ///< Of those that are there.
        int showCount = 0;
        int languageCount = 0;
        bool isVisible = false;
    };

    explicit FakeSettingsWindow(State &state) : m_state(state) { ++m_state.windowCount; }
    ~FakeSettingsWindow() override { --m_state.windowCount; }

    bool isVisible() const override { return m_state.isVisible; }

    void show() override
    {
        ++m_state.showCount;
        m_state.isVisible = true;
    }

    void close() override
    {
        m_state.isVisible = false;
        onClosed();
    }

    void refreshLanguage() override { ++m_state.languageCount; }

private:
    State &m_state;
};
