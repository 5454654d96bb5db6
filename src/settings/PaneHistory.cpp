#include "settings/PaneHistory.h"

void PaneHistory::visit(SettingsPane pane)
{
    m_paneHistory.resize(m_paneHistoryIndex + 1);
    if (m_paneHistory.last() == pane)
        return;
    m_paneHistory.append(pane);
    ++m_paneHistoryIndex;
}

void PaneHistory::goBack()
{
    if (canGoBack())
        --m_paneHistoryIndex;
}

void PaneHistory::goForward()
{
    if (canGoForward())
        ++m_paneHistoryIndex;
}
