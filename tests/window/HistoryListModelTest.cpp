#include "tests/fakes/FakeWorkspace.h"
#include "tests/window/SampleHistory.h"

#include "window/ApplicationNames.h"
#include "window/HistoryListModel.h"
#include "window/HistoryRow.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class HistoryListModelTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void rowsShowTheItems();
    void updatesLeadToTheNewList();
    void neighbouringRowsGoTogether();
    void aPersistentIndexFollowsItsItem();
    void aSingleRowIsReplaced();
    void aRowIsSpokenWithAllItsParts();

private:
    FakeWorkspace m_workspace;
    FakeClock m_clock;
    ApplicationNames m_names{m_workspace};
    HistoryRowCache m_rows{m_names, m_clock};
    std::unique_ptr<HistoryListModel> m_model;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
};

void HistoryListModelTest::init()
{
    m_tester.reset();
    m_model = std::make_unique<HistoryListModel>(m_rows);
    m_tester = std::make_unique<QAbstractItemModelTester>(
        m_model.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
}

void HistoryListModelTest::rowsShowTheItems()
{
    m_model->reload(SampleHistory::texts({u"one"_s, u"two"_s}));
    QCOMPARE(m_model->rowCount(), 2);
    QCOMPARE(m_model->index(1).data(), u"two"_s);
    m_model->reload({});
    QCOMPARE(m_model->rowCount(), 0);
}

void HistoryListModelTest::updatesLeadToTheNewList()
{
    QRandomGenerator random(5);
    const ClipboardItemList pool = SampleHistory::numbered(30);
    for (int round = 0; round < 100; ++round) {
        ClipboardItemList next;
        for (const ClipboardItemPointer &item : pool) {
            if (random.bounded(2))
                next.insert(random.bounded(next.size() + 1), item);
        }
        m_model->update(next, listDifference(m_model->items(), next));
        QCOMPARE(m_model->items(), next);
        QCOMPARE(m_model->rowCount(), int(next.size()));
    }
}

void HistoryListModelTest::neighbouringRowsGoTogether()
{
    const ClipboardItemList items = SampleHistory::numbered(6);
    m_model->reload(items);
    QSignalSpy removed(m_model.get(), &QAbstractItemModel::rowsRemoved);
    const ClipboardItemList left{items[0], items[4]};
    m_model->update(left, listDifference(items, left));
    QCOMPARE(removed.count(), 2); // The rows 1 to 3, and row 5.
}

void HistoryListModelTest::aPersistentIndexFollowsItsItem()
{
    const ClipboardItemList items = SampleHistory::numbered(3);
    m_model->reload(items);
    const QPersistentModelIndex index(m_model->index(1));
    const ClipboardItemList more = SampleHistory::texts({u"new"_s}) + items;
    m_model->update(more, listDifference(items, more));
    QCOMPARE(index.row(), 2);
    QCOMPARE(index.data(), u"entry 1"_s);
}

void HistoryListModelTest::aSingleRowIsReplaced()
{
    m_model->reload(SampleHistory::numbered(3));
    QSignalSpy changed(m_model.get(), &QAbstractItemModel::dataChanged);
    m_model->replaceItem(1, SampleHistory::shared(SampleHistory::textItem(u"other"_s)));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(m_model->index(1).data(), u"other"_s);
}

void HistoryListModelTest::aRowIsSpokenWithAllItsParts()
{
    m_model->reload({SampleHistory::mixed().at(3)});
    QCOMPARE(
        m_model->index(0).data(Qt::AccessibleTextRole).toString(),
        u"Text, The tide tables for Saturday: high water 06:42 (4.1 m), low water 12:55 "
        "(0.8 m),..., from Mail, tagged sailing, travel, and 1 more, 26 minutes ago, favorite"_s);
}

QTEST_GUILESS_MAIN(HistoryListModelTest)
#include "HistoryListModelTest.moc"
