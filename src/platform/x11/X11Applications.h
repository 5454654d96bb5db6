#pragma once

#include "platform/Workspace.h"
#include "platform/linux/DesktopEntries.h"
#include "platform/x11/X11Windows.h"

#include <QHash>

/// The programs behind the windows of other programs. Used by one thread, like the requests and the
/// entries that it is given, which must outlive it.
class X11Applications
{
public:
    X11Applications(X11Requests &requests, const DesktopEntries &entries)
        : m_entries(entries)
        , m_windows(requests)
    {
    }

    /// The window in front and what it tells of its program, which costs a few answers of the
    /// server and no file. Absent if there is none.
    struct Front
    {
        quint32 window = 0;
        X11Windows::Identity identity;
    };
    std::optional<Front> front();

    /// Reads desktop entries, the first time for each program.
    RunningApplication describe(const Front &front);

private:
    const DesktopEntries &m_entries;
    X11Windows m_windows;
    /// Programs that were found before, by what their windows tell.
    QHash<QString, RunningApplication> m_known;
};
