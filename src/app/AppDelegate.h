#pragma once

#include "app/HotkeyManager.h"
#include "app/MainMenu.h"
#include "app/PastePipeline.h"
#include "core/ClipboardItemManager.h"
#include "settings/SettingsWindowProtocol.h"
#include "window/ClipboardSearchWindowProtocol.h"

#include <QObject>

class ClipboardMonitor;
class DesktopAppearance;
class HotkeyRefusalNotice;
class HotkeySettingsManager;
class InternalCopies;
class LanguageManager;
class StatusItem;
class StatusItemController;
class Workspace;

/// The root object of the running program: owns the menus and the windows, and routes between
/// status item, capture, windows, hot key and paste. Main thread only.
class AppDelegate : public QObject
{
    Q_OBJECT

public:
    /// Makes a history window that shows \a items; it is not on the screen yet.
    using WindowFactory
        = std::function<std::unique_ptr<ClipboardSearchWindowProtocol>(const ClipboardItemList &)>;

    /// Makes the settings window; it is not on the screen yet.
    using SettingsFactory = std::function<std::unique_ptr<SettingsWindowProtocol>()>;

    /// What the delegate works with; all of it outlives the delegate.
    struct Collaborators
    {
        ClipboardItemManager &itemManager;
        ClipboardMonitor &monitor;
        PastePipeline &pastePipeline;
        HotkeySettingsManager &hotkeySettings;
        LanguageManager &languages;
        InternalCopies &internalCopies;
        GlobalHotkey &globalHotkey;
        HotkeyRefusalNotice &hotkeyRefusalNotice;
        StatusItem &statusItem;
        Workspace &workspace;
        DesktopAppearance &appearance;
        Scheduler &scheduler;
        WindowFactory makeWindow;
        SettingsFactory makeSettingsWindow;
    };

    explicit AppDelegate(Collaborators collaborators);
    ~AppDelegate() override;

    void applicationDidFinishLaunching();
    /// The program was started once more, or chosen in a launcher: shows the history window, or
    /// brings the settings forward if they are open.
    void applicationDidBecomeActive();
    /// Stops listening to the desktop and writes what is still to be written.
    void applicationWillTerminate();

    /// Has the event loop end, and the program with it.
    void terminate();

    /// Hides the history window if it is there to stay, else shows it, also out of its way out.
    void toggleHistoryWindow();
    void showHistoryWindow();
    void showSettings();

    bool hasHistoryWindow() const { return m_searchWindow != nullptr; }
    bool hasSettingsWindow() const { return m_settingsWindow != nullptr; }

private:
    void setupMainMenu();
    void setupStatusItem();
    void setupHotkey();
    void observeNotifications();
    void stopObserving();
    void refreshTexts();
    void hideWindows();
    void hideHistoryWindow();
    void hotkeySettingsChanged(const HotkeySettings &settings);
    void handleNewItem(const ClipboardItem &item);
    void refreshWindow();
    void recordPreviouslyActiveApp();
    void createWindow(const ClipboardItemList &items);
    void dropWindow();
    void createSettingsWindow();

    Collaborators m_with;
    MainMenu m_mainMenu;
    std::unique_ptr<StatusItemController> m_statusItemController;
    std::unique_ptr<HotkeyManager> m_hotkeyManager;
    std::unique_ptr<ClipboardSearchWindowProtocol> m_searchWindow;
    /// Hidden for good, and gone on the next turn of the event loop.
    std::unique_ptr<ClipboardSearchWindowProtocol> m_endingWindow;
    std::unique_ptr<SettingsWindowProtocol> m_settingsWindow;
};
