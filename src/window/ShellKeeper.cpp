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
    return shell.style() == style && (!window || m_workspace.isWithdrawn(window));
}

void ShellKeeper::takeBack(std::unique_ptr<WindowShell> shell)
{
    shell->hide();
    m_spare = std::move(shell);
}
