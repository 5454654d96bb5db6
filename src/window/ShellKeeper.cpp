#include "window/ShellKeeper.h"

#include "platform/Workspace.h"

#include <utility>

ShellKeeper::ShellKeeper(Workspace &workspace) : m_workspace(workspace)
{
}

ShellKeeper::~ShellKeeper() = default;

ShellKeeper::LentShell ShellKeeper::lend(const HistoryWindowStyle &style)
{
    std::unique_ptr<WindowShell> shell = std::exchange(m_spare, nullptr);
    if (!shell || !isUsable(*shell, style))
        shell = std::make_unique<WindowShell>(style);
    return {shell.release(), [this](WindowShell *lent) {
                takeBack(std::unique_ptr<WindowShell>(lent));
            }};
}

bool ShellKeeper::isUsable(const WindowShell &shell, const HistoryWindowStyle &style) const
{
    QWindow *window = shell.windowHandle();
    if (!window)
        return shell.style() == style; // It has not been opened yet.
    // One that was closed, and not hidden, has lost what the desktop knew.
    return shell.style() == style && window->handle() && m_workspace.isWithdrawn(window);
}

void ShellKeeper::takeBack(std::unique_ptr<WindowShell> shell)
{
    shell->hide();
    m_spare = std::move(shell);
}
