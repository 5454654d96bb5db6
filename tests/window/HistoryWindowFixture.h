#pragma once

#include "tests/fakes/FakeDesktopAppearance.h"
#include "tests/fakes/FakePointerMonitor.h"
#include "tests/fakes/HistoryListFixture.h"
#include "tests/window/SampleHistory.h"

#include "tags/NewTagAlert.h"
#include "window/ClipboardSearchWindow.h"
#include "window/ClipboardSearchWindowCompat.h"
#include "window/ClipboardTableView.h"
#include "window/SearchField.h"

#include <QApplication>
#include <QMenu>
#include <QTest>
#include <QWindow>

#include <memory>

/// Notes what it is asked to do with our window, and whether that was on the screen then.
class WatchedWorkspace : public FakeWorkspace
{
public:
    void prepareOwnWindow(QWindow *window) override
    {
        note("prepare", window);
    }
    void activateOwnWindow(QWindow *window) override
    {
        note("activate", window);
    }

    QStringList calls;

private:
    void note(const char *call, const QWindow *window)
    {
        const char *state = window && window->isVisible() ? " shown" : " hidden";
        calls.append(QLatin1String(call) + QLatin1String(state));
    }
};

/// A history window over a history of its own, on a desktop that a test plays.
class HistoryWindowFixture : protected HistoryListFixture
{
protected:
    inline static const QString kFrameKey = QStringLiteral("ClipboardSearchWindowFrame");
    inline static const QString kPinKey = QStringLiteral("ClipboardSearchWindowShowsPinButton");

    void setUpWindow()
    {
        setUpList();
        m_desktop = std::make_unique<WatchedWorkspace>();
        m_shells = std::make_unique<ShellKeeper>(*m_desktop);
        m_pointer = std::make_unique<FakePointerMonitor>();
        m_appearance = std::make_unique<FakeDesktopAppearance>();
        m_appearance->dark = false;
        m_pasted.clear();
        m_toggled.clear();
        m_hiddenCount = 0;
    }

    void tearDownWindow()
    {
        m_window.reset();
        m_shells.reset();
    }

    HistoryWindowCollaborators collaborators()
    {
        return {.workspace = *m_desktop,
                .pointerMonitor = *m_pointer,
                .appearance = *m_appearance,
                .defaults = *m_defaults,
                .shells = *m_shells,
                .list = listCollaborators()};
    }

    void make(const ClipboardItemList &items = SampleHistory::mixed())
    {
        m_window = std::make_unique<ClipboardSearchWindow>(collaborators(), items);
        watch();
    }

    void makeCompat(const ClipboardItemList &items = SampleHistory::mixed())
    {
        m_window = std::make_unique<ClipboardSearchWindowCompat>(collaborators(), items);
        watch();
    }

    void watch()
    {
        m_window->onPasteSelected = [this](const ClipboardItemPointer &item) {
            m_pasted.append(item->stringValue.value_or(Utf8Text()).toString());
        };
        m_window->onFavoriteToggled = [this](const QUuid &id) { m_toggled.append(id); };
        m_window->onWindowHidden = [this] { ++m_hiddenCount; };
    }

    void openWholly()
    {
        m_window->show();
        pass(std::chrono::milliseconds(300));
        QVERIFY(QTest::qWaitForWindowActive(&m_window->shell()));
    }

    /// Anywhere on the screen, and what comes of it.
    void press(QPoint position, quint64 timestamp = 0)
    {
        m_pointer->press(position, timestamp);
        pass(std::chrono::milliseconds(16));
    }

    /// The window has the focus as the desktop sees it meanwhile.
    QMenu &openRowMenu(int row)
    {
        m_desktop->frontmost = RunningApplication{QStringLiteral("tessarine"),
                                                  QStringLiteral("Tessarine"),
                                                  m_window->shell().winId(), 5};
        table()->selectRow(row);
        QTest::keyClick(table(), Qt::Key_Menu);
        return dynamic_cast<QMenu &>(*QApplication::activePopupWidget());
    }

    NewTagAlert &askForATag()
    {
        ClipboardTableViewController &list = m_window->tableViewController();
        list.requestNewTag(list.items().first()->id);
        pass(std::chrono::milliseconds(16));
        return *m_window->shell().findChild<NewTagAlert *>();
    }

    QRect geometryOf(const char *name)
    {
        QWidget *widget = part(name);
        return {widget->mapTo(&m_window->shell(), QPoint()), widget->size()};
    }

    QImage picture()
    {
        return m_window->shell().grab().toImage().convertToFormat(QImage::Format_ARGB32);
    }

    template <typename Widget = QWidget>
    Widget *part(const char *name)
    {
        return m_window->shell().findChild<Widget *>(QString::fromLatin1(name));
    }
    SearchField *field() { return part<SearchField>("searchField"); }
    ClipboardTableView *table() { return part<ClipboardTableView>("tableView"); }
    int rowCount() { return table()->model()->rowCount(); }

    std::unique_ptr<WatchedWorkspace> m_desktop;
    std::unique_ptr<FakePointerMonitor> m_pointer;
    std::unique_ptr<FakeDesktopAppearance> m_appearance;
    std::unique_ptr<ShellKeeper> m_shells;
    std::unique_ptr<HistoryWindow> m_window;
    QStringList m_pasted;
    QList<QUuid> m_toggled;
    int m_hiddenCount = 0;
};
