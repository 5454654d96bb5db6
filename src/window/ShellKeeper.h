#pragma once

#include "window/WindowShell.h"

#include <functional>
#include <memory>

class Workspace;

/// Keeps the window of one opening for the next. Main thread only.
///
/// The desktop and input methods know windows one by one. To be told of a new one takes them a while,
/// in which letters that are typed would pass an input method by.
class ShellKeeper
{
public:
    using LentShell = std::unique_ptr<WindowShell, std::function<void(WindowShell *)>>;

    /// \a workspace must outlive the keeper.
    explicit ShellKeeper(Workspace &workspace);
    ~ShellKeeper();
    Q_DISABLE_COPY_MOVE(ShellKeeper)

    /// A hidden window of that style, which goes back to the keeper at its end; the keeper must
    /// outlive it.
    LentShell lend(const HistoryWindowStyle &style);

private:
    bool isUsable(const WindowShell &shell, const HistoryWindowStyle &style) const;
    void takeBack(std::unique_ptr<WindowShell> shell);

    Workspace &m_workspace;
    std::unique_ptr<WindowShell> m_spare;
};
