#pragma once

#include "settings/SettingsPane.h"

/// The panes that were visited, to go back and forward among, as in a browser.
class PaneHistory
{
public:
    explicit PaneHistory(SettingsPane first)
        : m_paneHistory{first}
    {
    }

    SettingsPane current() const { return m_paneHistory.at(m_paneHistoryIndex); }

    /// Goes to \a pane and forgets what lay ahead. The pane that was visited last is not noted
    /// twice.
    void visit(SettingsPane pane);

    bool canGoBack() const { return m_paneHistoryIndex > 0; }
    bool canGoForward() const { return m_paneHistoryIndex + 1 < m_paneHistory.size(); }

    /// One step; does nothing at the end.
    void goBack();
    void goForward();

private:
    QList<SettingsPane> m_paneHistory; ///< Never empty.
    qsizetype m_paneHistoryIndex = 0;
};
