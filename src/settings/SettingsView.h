#pragma once

#include "settings/PaneHistory.h"
#include "settings/SettingsPicker.h"

#include <QHash>
#include <QWidget>

class DesktopAppearance;
class GlobalHotkey;
class HistoryStepButton;
class HotkeySettingsManager;
class LanguageManager;
class QStackedWidget;
class SettingsPaneView;
class SidebarItem;
class UserDefaults;
class Workspace;

/// What the settings need of others; all of it must outlive them.
struct SettingsCollaborators
{
    Workspace &workspace;
    DesktopAppearance &appearance;
    GlobalHotkey &globalHotkey;
    UserDefaults &defaults;
    LanguageManager &languages;
    HotkeySettingsManager &hotkeySettings;
};

/// Everything in the settings window: the list of panes, and the one that is chosen. It begins with
/// the first.
class SettingsView : public QWidget
{
    Q_OBJECT

public:
    explicit SettingsView(const SettingsCollaborators &collaborators);

    SettingsPane selectedPane() const { return m_paneHistory.current(); }

    /// Makes all texts anew.
    void refreshLanguage();

    /// Takes its look from the desktop again.
    void refreshAppearance();

signals:
    void pinButtonVisibilityChanged();
    void closed();

protected:
    void changeEvent(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    bool event(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void buildSidebar();
    void buildBar();
    void buildPanes();
    void arrange();
    void addPane(SettingsPane pane, SettingsPaneView *view);
    Look look() const;
    void visitPane(SettingsPane pane);
    void step(void (PaneHistory::*direction)());
    void showPane();

    SettingsCollaborators m_collaborators;
    SystemColors m_colors;
    qreal m_textScale = 1;
    PaneHistory m_paneHistory;
    QWidget *m_sidebar = nullptr;
    QHash<SettingsPane, SidebarItem *> m_items;
    HistoryStepButton *m_backButton = nullptr;
    HistoryStepButton *m_forwardButton = nullptr;
    QStackedWidget *m_stack = nullptr;
    QHash<SettingsPane, SettingsPaneView *> m_panes;
};
