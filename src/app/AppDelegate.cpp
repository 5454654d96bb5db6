#include "app/AppDelegate.h"

#include "app/HotkeyRefusalNotice.h"
#include "capture/ClipboardMonitor.h"
#include "foundation/Log.h"
#include "language/LanguageManager.h"
#include "language/Localized.h"
#include "platform/Workspace.h"
#include "settings/HotkeySettingsManager.h"

#include <QApplication>
#include <QMenu>

using namespace Qt::StringLiterals;

AppDelegate::AppDelegate(Collaborators collaborators) : m_with(std::move(collaborators))
{
}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching()
{
    printLine(u"Tessarine started"_s);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    setupStatusItem();
    m_with.monitor.onNewClipboardItem = [this](const ClipboardItem &item) { handleNewItem(item); };
    m_with.monitor.onPictureStored = [this] { refreshWindow(); };
    m_with.pastePipeline.onHideWindow = [this] {
        if (m_searchWindow)
            m_searchWindow->hide();
    };
    m_with.monitor.startMonitoring();
    setupHotkey();
    connect(&m_with.hotkeySettings, &HotkeySettingsManager::hotkeySettingsChanged, this,
            &AppDelegate::hotkeySettingsChanged);
    connect(&m_with.languages, &LanguageManager::languageChanged, this,
            &AppDelegate::refreshTexts);
    printLine(u"Tessarine fully initialized"_s);
}

void AppDelegate::applicationDidBecomeActive()
{
    showHistoryWindow();
}

void AppDelegate::applicationWillTerminate()
{
    m_with.pastePipeline.applicationWillTerminate();
    m_with.monitor.stopMonitoring();
    disconnect(&m_with.hotkeySettings, nullptr, this, nullptr);
    disconnect(&m_with.languages, nullptr, this, nullptr);
    m_hotkeyManager.reset();
    m_with.itemManager.drain();
}

void AppDelegate::toggleHistoryWindow()
{
    const bool isThereToStay = m_searchWindow && m_searchWindow->isVisible()
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

void AppDelegate::setupStatusItem()
{
    printLine(u"Setting up menu bar..."_s);
    const bool isInTray = m_trayIcon.create();
    if (isInTray) {
        printLine(u"Status item created successfully"_s);
        printLine(u"Status item button exists"_s);
        printLine(u"Menu bar button set up"_s);
        printLine(u"Button action configured"_s);
    } else {
        printLine(u"ERROR: Failed to create status item!"_s);
    }
    connect(&m_trayIcon, &TrayIcon::clicked, this, &AppDelegate::toggleHistoryWindow);

    QMenu &menu = m_trayIcon.menu();
    m_showMenuItem = menu.addAction(QString(), this, &AppDelegate::showHistoryWindow);
    menu.addSeparator();
    m_quitMenuItem = menu.addAction(QString(), qApp, [] { QCoreApplication::exit(); });
    refreshMenuTitles();
    if (isInTray)
        printLine(u"Status bar set up complete"_s);
}

void AppDelegate::setupHotkey()
{
    const HotkeySettings settings = m_with.hotkeySettings.loadSettings();
    m_hotkeyManager = std::make_unique<HotkeyManager>(m_with.globalHotkey, [this] {
        printLine(u"Hotkey triggered"_s);
        toggleHistoryWindow();
    });
    m_hotkeyManager->installEventHandler();
    m_hotkeyManager->registerHotkey(settings);
    if (!m_hotkeyManager->isRegistered())
        m_with.hotkeyRefusalNotice.show(settings);
    printLine(u"Hotkey setup complete: "_s + HotkeySettingsManager::displayString(settings));
}

void AppDelegate::refreshMenuTitles()
{
    m_showMenuItem->setText(localized(u"menu.show_history"_s, u"Show Clipboard History"_s));
    m_quitMenuItem->setText(localized(u"menu.quit"_s, u"Quit Tessarine"_s));
}

void AppDelegate::refreshTexts()
{
    refreshMenuTitles();
    if (m_searchWindow)
        m_searchWindow->refreshLanguage();
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
    m_searchWindow->onFavoriteToggled
        = [this](const QUuid &id) { m_with.itemManager.toggleFavorite(id); };
}

void AppDelegate::dropWindow()
{
    // The window is still running its own code; it ends on the next turn of the event loop.
    m_endingWindow = std::move(m_searchWindow);
    QMetaObject::invokeMethod(this, [this] { m_endingWindow.reset(); }, Qt::QueuedConnection);
}
