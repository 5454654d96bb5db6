#pragma once

#include "app/HotkeyManager.h"
#include "app/PastePipeline.h"
#include "app/TrayIcon.h"
#include "core/ClipboardItemManager.h"
#include "window/ClipboardSearchWindowProtocol.h"

#include <QObject>

class ClipboardMonitor;
class HotkeyRefusalNotice;
class HotkeySettingsManager;
class LanguageManager;
class QAction;
class Workspace;

/// The root object of the running program: owns the status item and the history window, and routes
/// between capture, window, hot key and paste. Main thread only.
class AppDelegate : public QObject
{
    Q_OBJECT

public:
    /// Makes a history window that shows \a items; it is not on the screen yet.
    using WindowFactory
        = std::function<std::unique_ptr<ClipboardSearchWindowProtocol>(const ClipboardItemList &)>;

    /// What the delegate works with; all of it outlives the delegate.
    struct Collaborators
    {
        ClipboardItemManager &itemManager;
        ClipboardMonitor &monitor;
        PastePipeline &pastePipeline;
        HotkeySettingsManager &hotkeySettings;
        LanguageManager &languages;
        GlobalHotkey &globalHotkey;
        HotkeyRefusalNotice &hotkeyRefusalNotice;
        Workspace &workspace;
        WindowFactory makeWindow;
    };

    explicit AppDelegate(Collaborators collaborators);
    ~AppDelegate() override;

    void applicationDidFinishLaunching();
    /// The program was started once more, or chosen in a launcher.
    void applicationDidBecomeActive();
    void applicationWillTerminate();

    /// Hides the history window if it is there to stay, else shows it, also out of its way out.
    void toggleHistoryWindow();
    void showHistoryWindow();

    bool hasHistoryWindow() const { return m_searchWindow != nullptr; }

private:
    void setupStatusItem();
    void setupHotkey();
    void refreshMenuTitles();
    void refreshTexts();
    void hotkeySettingsChanged(const HotkeySettings &settings);
    void handleNewItem(const ClipboardItem &item);
    void refreshWindow();
    void recordPreviouslyActiveApp();
    void createWindow(const ClipboardItemList &items);
    void dropWindow();

    Collaborators m_with;
    TrayIcon m_trayIcon;
    QAction *m_showMenuItem = nullptr; ///< Belongs to the menu.
    QAction *m_quitMenuItem = nullptr; ///< Belongs to the menu.
    std::unique_ptr<HotkeyManager> m_hotkeyManager;
    std::unique_ptr<ClipboardSearchWindowProtocol> m_searchWindow;
    /// Hidden for good, and gone on the next turn of the event loop.
    std::unique_ptr<ClipboardSearchWindowProtocol> m_endingWindow;
};
