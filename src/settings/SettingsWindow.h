#pragma once

#include "foundation/CallbackHook.h"
#include "settings/SettingsView.h"
#include "settings/SettingsWindowProtocol.h"

/// The settings window. It begins with the first pane each time it is made, and stays in front of
/// other programs' windows.
class SettingsWindow : public SettingsWindowProtocol
{
public:
    explicit SettingsWindow(const SettingsCollaborators &collaborators);
    ~SettingsWindow() override;

    bool isVisible() const override { return m_view.isVisible(); }
    void show() override;
    void close() override { m_view.close(); }
    void refreshLanguage() override { m_view.refreshLanguage(); }

    /// The widget on the screen.
    QWidget &view() { return m_view; }

private:
    void placeInitially();

    Workspace &m_workspace;
    SettingsView m_view;
    CallbackHook<> m_appearanceHook;
};

/// The settings window, not yet shown.
std::unique_ptr<SettingsWindowProtocol>
makeSettingsWindow(const SettingsCollaborators &collaborators);
