#pragma once

#include "app/AppDelegate.h"
#include "app/HotkeyRefusalNotice.h"
#include "app/PastePipeline.h"
#include "app/ScopedFileLease.h"
#include "foundation/InternalCopies.h"
#include "language/LanguageManager.h"
#include "settings/HotkeySettingsManager.h"
#include "tests/fakes/CaptureFixture.h"
#include "tests/fakes/FakeDesktopAppearance.h"
#include "tests/fakes/FakeGlobalHotkey.h"
#include "tests/fakes/FakeHistoryWindow.h"
#include "tests/fakes/FakeNotifications.h"
#include "tests/fakes/FakePasteKeystroke.h"
#include "tests/fakes/FakeSettingsWindow.h"
#include "tests/fakes/FakeStatusItem.h"

/// A base of tests of the whole program without a desktop.
class AppDelegateFixture : protected CaptureFixture
{
protected:
    void setUpDelegate()
    {
        m_window = {};
        m_settingsWindow = {};
        m_notifications.shown.clear();
        setUpCapture();
        m_keystroke = std::make_unique<FakePasteKeystroke>();
        m_hotkey = std::make_unique<FakeGlobalHotkey>();
        m_hotkeySettings = std::make_unique<HotkeySettingsManager>(*m_defaults);
        m_languages = std::make_unique<LanguageManager>(*m_defaults);
        m_languages->install();
        m_internalCopies = std::make_unique<InternalCopies>();
        m_statusItem = std::make_unique<FakeStatusItem>();
        m_hotkeyNotice = std::make_unique<HotkeyRefusalNotice>(*m_defaults, m_notifications);
        m_fileLease = std::make_unique<ScopedFileLease>(m_files->references, *m_scheduler, *m_clock,
                                                        *m_defaults);
        m_pipeline = std::make_unique<PastePipeline>(*m_pasteboard, *m_workspace, *m_keystroke,
                                                     *m_scheduler, *m_monitor, *m_manager,
                                                     *m_defaults, *m_codec, *m_fileLease);
        m_delegate = std::make_unique<AppDelegate>(AppDelegate::Collaborators{
            .itemManager = *m_manager,
            .monitor = *m_monitor,
            .pastePipeline = *m_pipeline,
            .hotkeySettings = *m_hotkeySettings,
            .languages = *m_languages,
            .internalCopies = *m_internalCopies,
            .globalHotkey = *m_hotkey,
            .hotkeyRefusalNotice = *m_hotkeyNotice,
            .statusItem = *m_statusItem,
            .workspace = *m_workspace,
            .appearance = m_appearance,
            .scheduler = *m_scheduler,
            .makeWindow =
                [this](const ClipboardItemList &items) {
                    m_window.items = items;
                    auto window = std::make_unique<FakeHistoryWindow>(m_window);
                    m_latestWindow = window.get();
                    return window;
                },
            .makeSettingsWindow =
                [this] {
                    auto window = std::make_unique<FakeSettingsWindow>(m_settingsWindow);
                    m_latestSettingsWindow = window.get();
                    return window;
                }});
    }

    void tearDownDelegate()
    {
        m_delegate.reset();
        m_pipeline.reset();
        m_fileLease.reset();
        m_languages.reset();
        tearDownCapture();
    }

    void pressHotkey() { m_hotkey->onPressed(); }
    void clickStatusItem(const QString &token = {}) { m_statusItem->onClicked(token); }

    /// What the panel draws, separators as dashes and submenus behind their titles.
    static QStringList titlesOf(const QList<StatusMenuEntry> &entries)
    {
        QStringList titles;
        for (const StatusMenuEntry &entry : entries) {
            titles.append(entry.isSeparator ? QStringLiteral("-") : entry.title);
            titles.append(titlesOf(entry.children));
        }
        return titles;
    }

    /// Chooses the entry with that title in the menu that the panel draws; false if it has none.
    bool chooseInPanel(const QString &title) { return choose(m_statusItem->menu, title); }

    std::unique_ptr<FakePasteKeystroke> m_keystroke;
    std::unique_ptr<FakeGlobalHotkey> m_hotkey;
    FakeDesktopAppearance m_appearance;
    FakeNotifications m_notifications;
    std::unique_ptr<HotkeyRefusalNotice> m_hotkeyNotice;
    std::unique_ptr<HotkeySettingsManager> m_hotkeySettings;
    std::unique_ptr<LanguageManager> m_languages;
    std::unique_ptr<InternalCopies> m_internalCopies;
    std::unique_ptr<FakeStatusItem> m_statusItem;
    std::unique_ptr<ScopedFileLease> m_fileLease;
    std::unique_ptr<PastePipeline> m_pipeline;
    std::unique_ptr<AppDelegate> m_delegate;
    FakeHistoryWindow::State m_window;
    FakeHistoryWindow *m_latestWindow = nullptr;
    FakeSettingsWindow::State m_settingsWindow;
    FakeSettingsWindow *m_latestSettingsWindow = nullptr;

private:
    bool choose(const QList<StatusMenuEntry> &entries, const QString &title)
    {
        for (const StatusMenuEntry &entry : entries) {
            if (entry.title == title) {
                m_statusItem->onMenuEntryChosen(entry.id);
                return true;
            }
            if (choose(entry.children, title))
                return true;
        }
        return false;
    }
};
