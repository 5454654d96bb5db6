#include "settings/SettingsWindow.h"

#include "platform/DesktopAppearance.h"
#include "platform/Workspace.h"

#include <QScreen>

SettingsWindow::SettingsWindow(const SettingsCollaborators &collaborators)
    : m_workspace(collaborators.workspace)
    , m_view(collaborators)
    , m_appearanceHook(collaborators.appearance.onChanged, [this] { m_view.refreshAppearance(); })
{
    placeInitially();
    QObject::connect(&m_view, &SettingsView::pinButtonVisibilityChanged, &m_view, [this] {
        if (onPinButtonVisibilityChanged)
            onPinButtonVisibilityChanged();
    });
    QObject::connect(&m_view, &SettingsView::closed, &m_view, [this] {
        if (onClosed)
            onClosed();
    });
}

SettingsWindow::~SettingsWindow() = default;

void SettingsWindow::show()
{
    m_view.winId(); // The desktop is told before the window appears, so it must exist.
    m_workspace.prepareOwnWindow(m_view.windowHandle());
    m_view.showNormal();
    m_workspace.activateOwnWindow(m_view.windowHandle());
}

void SettingsWindow::placeInitially()
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    if (!screen)
        return;
    QRect frame = m_view.geometry();
    frame.moveCenter(screen->availableGeometry().center());
    m_view.setGeometry(frame);
}

std::unique_ptr<SettingsWindowProtocol>
makeSettingsWindow(const SettingsCollaborators &collaborators)
{
    return std::make_unique<SettingsWindow>(collaborators);
}
