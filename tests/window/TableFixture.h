#pragma once

#include "tests/fakes/HistoryListFixture.h"
#include "tests/fakes/PaintedRegions.h"
#include "tests/window/SampleHistory.h"

#include "window/ClipboardTableView.h"
#include "window/ClipboardTableViewController.h"
#include "window/RowLayout.h"

#include <QAbstractItemModelTester>
#include <QTest>

#include <algorithm>

/// A base of tests of the list: a view with its controller, without the window around them.
class TableFixture : protected HistoryListFixture
{
protected:
    /// To be called before each test.
    void setUpTable()
    {
        tearDownTable();
        setUpList();
        m_pasted.clear();
        m_toggled.clear();
    }

    void tearDownTable()
    {
        m_tester.reset();
        m_controller.reset();
        m_view.reset();
    }

    /// Lists \a items, which the history need not know.
    void make(const ClipboardItemList &items)
    {
        tearDownTable();
        m_view = std::make_unique<ClipboardTableView>(*m_scheduler, *m_clock, 0);
        m_view->setColors(systemColors(ColorScheme::Light));
        m_view->resize(680, 400);
        m_controller = std::make_unique<ClipboardTableViewController>(
            *m_view, 18, listCollaborators(), items);
        m_controller->onItemSelected = [this](const ClipboardItemPointer &item) {
            m_pasted.append(textOf(item));
        };
        m_controller->onFavoriteToggled = [this](const QUuid &id) { m_toggled.append(id); };
        m_tester = std::make_unique<QAbstractItemModelTester>(
            m_view->model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
        m_view->show();
    }

    /// Lists a history of \a items.
    void makeHistory(ClipboardItemList items)
    {
        std::ranges::reverse(items); // What comes last stands first.
        fillHistory(items);
        make(m_manager->items());
    }

    /// Until the view is on the screen with all that has been changed so far. A server has a new
    /// window drawn when it likes.
    void waitUntilDrawn()
    {
        QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
        QVERIFY(QTest::qWaitForWindowActive(m_view.get()));
        PaintedRegions painted(*m_view->viewport());
        QVERIFY(QTest::qWaitFor([&painted] {
            painted.clear();
            QCoreApplication::processEvents();
            return painted.regions().isEmpty();
        }));
    }

    void search(const QString &text) { m_controller->search(text); }

    static QString textOf(const ClipboardItemPointer &item)
    {
        return item->stringValue.value_or(Utf8Text()).toString();
    }

    QStringList listedTexts() const
    {
        QStringList texts;
        for (const ClipboardItemPointer &item : m_controller->filteredItems())
            texts.append(textOf(item));
        return texts;
    }

    /// Where the row of an entry is in the viewport.
    QRect boxOf(const ClipboardItemPointer &item) const
    {
        return m_view->rowBox(int(indexOfItem(m_controller->filteredItems(), item->id)));
    }

    RowLayout layoutOf(int row) const
    {
        return RowLayout(m_view->visualRect(m_view->model()->index(row, 0)));
    }
    QPoint starOf(int row) const { return layoutOf(row).star.center().toPoint(); }
    QPoint contentOf(int row) const { return layoutOf(row).content.center().toPoint(); }

    std::unique_ptr<ClipboardTableView> m_view;
    std::unique_ptr<ClipboardTableViewController> m_controller;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
    QStringList m_pasted;
    QList<QUuid> m_toggled;
};
