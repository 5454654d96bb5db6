#include "app/AppDelegate.h"

#include "app/HotkeyRefusalNotice.h"
#include "app/StatusItemController.h"
#include "capture/ClipboardMonitor.h"
#include "foundation/InternalCopies.h"
#include "foundation/Log.h"
#include "language/LanguageManager.h"
#include "platform/GlobalHotkey.h"
#include "platform/Workspace.h"
#include "settings/HotkeySettingsManager.h"

#include <QApplication>

using namespace Qt::StringLiterals;

namespace {

/// A menu of ours would keep the keyboard from the window.
void closeMenus()
{
    while (QWidget *menu = QApplication::activePopupWidget())
        menu->hide();
}

} // namespace

AppDelegate::AppDelegate(Collaborators collaborators) : m_with(std::move(collaborators))
{
}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching()
{
    printLine(u"Tessarine started"_s);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    setupMainMenu();
    setupStatusItem();
    m_with.monitor.onNewClipboardItem = [this](const ClipboardItem &item) { handleNewItem(item); };
    m_with.monitor.onPictureStored = [this] { refreshWindow(); };
    m_with.pastePipeline.onHideWindow = [this] { hideHistoryWindow(); };
    m_with.monitor.startMonitoring();
    setupHotkey();
    observeNotifications();
    printLine(u"Tessarine fully initialized"_s);
}

void AppDelegate::applicationDidBecomeActive()
{
    if (m_settingsWindow && m_settingsWindow->isVisible())
        m_settingsWindow->show();
    else
        showHistoryWindow();
}

void AppDelegate::applicationWillTerminate()
{
    m_with.pastePipeline.applicationWillTerminate();
    m_with.monitor.stopMonitoring();
    stopObserving();
    m_statusItemController.reset();
    m_hotkeyManager.reset();
    m_with.itemManager.drain();
}

void AppDelegate::terminate()
{
    // Not quit(), which asks every window first.
    QCoreApplication::exit();
}

void AppDelegate::toggleHistoryWindow()
{
    const bool isThereToStay = m_searchWindow && m_searchWindow->isSeen()
        && !m_searchWindow->isHideAnimationInFlight();
    if (isThereToStay)
        m_searchWindow->hide();
    else
        showHistoryWindow();
}

void AppDelegate::showHistoryWindow()
{
    printLine(u"Showing clipboard history window..."_s);
    recordPreviouslyActiveApp();
    const ClipboardItemList items = m_with.itemManager.items();
    printLine(u"Total items: %1"_s.arg(items.size()));
    if (m_searchWindow)
        m_searchWindow->updateItems(items);
    else
        createWindow(items);
    m_searchWindow->show();
}

void AppDelegate::showSettings()
{
    hideHistoryWindow();
    if (!m_settingsWindow)
        createSettingsWindow();
    m_settingsWindow->show();
}

void AppDelegate::setupMainMenu()
{
    // The settings have a pane that says what this program is.
    connect(&m_mainMenu, &MainMenu::aboutRequested, this, &AppDelegate::showSettings);
    connect(&m_mainMenu, &MainMenu::settingsRequested, this, &AppDelegate::showSettings);
    connect(&m_mainMenu, &MainMenu::hideRequested, this, &AppDelegate::hideWindows);
    connect(&m_mainMenu, &MainMenu::quitRequested, this, &AppDelegate::terminate);
}

void AppDelegate::setupStatusItem()
{
    m_statusItemController = std::make_unique<StatusItemController>(
        m_with.statusItem, m_with.monitor, m_with.workspace, m_with.appearance, m_with.scheduler);
    StatusItemController *controller = m_statusItemController.get();
    connect(controller, &StatusItemController::toggleRequested, this,
            &AppDelegate::toggleHistoryWindow);
    connect(controller, &StatusItemController::showRequested, this,
            &AppDelegate::showHistoryWindow);
    connect(controller, &StatusItemController::settingsRequested, this, &AppDelegate::showSettings);
    connect(controller, &StatusItemController::quitRequested, this, &AppDelegate::terminate);
    controller->setupStatusItem();
}

void AppDelegate::setupHotkey()
{
    const HotkeySettings settings = m_with.hotkeySettings.loadSettings();
    m_hotkeyManager = std::make_unique<HotkeyManager>(m_with.globalHotkey, [this] {
        printLine(u"Hotkey triggered"_s);
        closeMenus();
        toggleHistoryWindow();
    });
    m_hotkeyManager->installEventHandler();
    if (m_hotkeyManager->registerHotkey(settings) == HotkeyError::kHeldByAnother)
        m_with.hotkeyRefusalNotice.show(settings);
    printLine(u"Hotkey setup complete: "_s + HotkeySettingsManager::displayString(settings));
}

void AppDelegate::observeNotifications()
{
    connect(&m_with.languages, &LanguageManager::languageChanged, this,
            &AppDelegate::refreshTexts);
    connect(&m_with.hotkeySettings, &HotkeySettingsManager::hotkeySettingsChanged, this,
            &AppDelegate::hotkeySettingsChanged);
    connect(&m_with.monitor, &ClipboardMonitor::clipboardMonitorPauseStateChanged, this,
            [this] { m_statusItemController->refresh(); });
    connect(&m_with.internalCopies, &InternalCopies::tessarineInternalCopyWillWrite, this,
            [this] { m_with.pastePipeline.internalCopyWillWrite(); });
}

void AppDelegate::stopObserving()
{
    m_with.languages.disconnect(this);
    m_with.hotkeySettings.disconnect(this);
    m_with.monitor.disconnect(this);
    m_with.internalCopies.disconnect(this);
}

void AppDelegate::refreshTexts()
{
    m_mainMenu.refreshMenuTitles();
    m_statusItemController->refreshTexts();
    if (m_settingsWindow)
        m_settingsWindow->refreshLanguage();
    if (m_searchWindow)
        m_searchWindow->refreshLanguage();
}

void AppDelegate::hideWindows()
{
    hideHistoryWindow();
    if (m_settingsWindow)
        m_settingsWindow->close();
}

void AppDelegate::hideHistoryWindow()
{
    if (m_searchWindow)
        m_searchWindow->hide();
}

void AppDelegate::hotkeySettingsChanged(const HotkeySettings &settings)
{
    if (m_hotkeyManager) {
        printLine(u"Updating hotkey settings..."_s);
        m_hotkeyManager->registerHotkey(settings);
    }
    printLine(u"Hotkey updated: "_s + HotkeySettingsManager::displayString(settings));
}

void AppDelegate::handleNewItem(const ClipboardItem &item)
{
    if (m_with.pastePipeline.isPasting()) {
        printLine(u"Ignoring clipboard change during paste operation"_s);
        return;
    }
    printLine(u"New clipboard item: "_s + rawValue(item.contentType));
    refreshWindow();
}

void AppDelegate::refreshWindow()
{
    // Reading the list waits for the insertion, so it is only read for somebody who looks at it.
    if (m_searchWindow)
        m_searchWindow->updateItems(m_with.itemManager.items());
}

void AppDelegate::recordPreviouslyActiveApp()
{
    const auto frontmost = m_with.workspace.frontmostApplication();
    if (!frontmost || m_with.workspace.isOwnApplication(*frontmost))
        return;
    m_with.pastePipeline.setPreviouslyActiveApp(*frontmost);
    const QString &name = frontmost->localizedName;
    printLine(u"Recorded previous app: "_s + (name.isEmpty() ? u"Unknown"_s : name));
}

void AppDelegate::createWindow(const ClipboardItemList &items)
{
    // Two windows at a time would listen to the desktop in each other's way.
    m_endingWindow.reset();
    m_searchWindow = m_with.makeWindow(items);
    m_searchWindow->onPasteSelected
        = [this](const ClipboardItemPointer &item) { m_with.pastePipeline.pasteItem(*item); };
    m_searchWindow->onWindowHidden = [this] { dropWindow(); };
    m_searchWindow->onTurnedAway = [this] {
        if (m_statusItemController)
            m_statusItemController->noteTurningAway();
    };
    m_searchWindow->onFavoriteToggled = [this](const QUuid &id) {
        m_with.itemManager.toggleFavorite(id);
        // An entry that is no favourite any more may leave no room for the oldest one.
        refreshWindow();
    };
}

void AppDelegate::dropWindow()
{
    // The window is still running its own code; it ends on the next turn of the event loop.
    m_endingWindow = std::move(m_searchWindow);
    QMetaObject::invokeMethod(this, [this] { m_endingWindow.reset(); }, Qt::QueuedConnection);
}

void AppDelegate::createSettingsWindow()
{
    m_settingsWindow = m_with.makeSettingsWindow();
    m_settingsWindow->onPinButtonVisibilityChanged = [this] {
        if (m_searchWindow)
            m_searchWindow->refreshPinButtonVisibility();
    };
    m_settingsWindow->onClosed = [this] {
        // The window is still running its own code; it ends on the next turn of the event loop.
        std::shared_ptr<SettingsWindowProtocol> ending = std::move(m_settingsWindow);
        QMetaObject::invokeMethod(
            this, [ending]() mutable { ending.reset(); }, Qt::QueuedConnection);
    };
}
