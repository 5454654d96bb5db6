#include "settings/PaneHistory.h"

#include <QTest>

using enum SettingsPane;

class PaneHistoryTest : public QObject
{
    Q_OBJECT

private slots:
    void itBeginsWithOnePane();
    void backAndForwardGoThroughWhatWasVisited();
    void visitingFromThePastForgetsWhatLayAhead();
    void thePaneVisitedLastIsNotedOnce();
    void visitingThePresentPaneInThePastForgetsWhatLayAhead();
    void thereIsNothingBeyondTheEnds();
};

void PaneHistoryTest::itBeginsWithOnePane()
{
    const PaneHistory history(General);
    QCOMPARE(history.current(), General);
    QVERIFY(!history.canGoBack());
    QVERIFY(!history.canGoForward());
}

void PaneHistoryTest::backAndForwardGoThroughWhatWasVisited()
{
    PaneHistory history(General);
    history.visit(Storage);
    history.visit(About);
    QCOMPARE(history.current(), About);
    history.goBack();
    QCOMPARE(history.current(), Storage);
    history.goBack();
    QCOMPARE(history.current(), General);
    QVERIFY(!history.canGoBack());
    history.goForward();
    QCOMPARE(history.current(), Storage);
    QVERIFY(history.canGoForward());
}

void PaneHistoryTest::visitingFromThePastForgetsWhatLayAhead()
{
    PaneHistory history(General);
    history.visit(Storage);
    history.goBack();
    history.visit(About);
    QVERIFY(!history.canGoForward());
    history.goBack();
    QCOMPARE(history.current(), General);
}

void PaneHistoryTest::thePaneVisitedLastIsNotedOnce()
{
    PaneHistory history(General);
    history.visit(Storage);
    history.visit(Storage);
    history.goBack();
    QCOMPARE(history.current(), General);
}

void PaneHistoryTest::visitingThePresentPaneInThePastForgetsWhatLayAhead()
{
    PaneHistory history(General);
    history.visit(Storage);
    history.goBack();
    history.visit(General);
    QCOMPARE(history.current(), General);
    QVERIFY(!history.canGoBack());
    QVERIFY(!history.canGoForward());
}

void PaneHistoryTest::thereIsNothingBeyondTheEnds()
{
    PaneHistory history(General);
    history.visit(About);
    history.goForward();
    QCOMPARE(history.current(), About);
    history.goBack();
    history.goBack();
    QCOMPARE(history.current(), General);
    history.goForward();
    QCOMPARE(history.current(), About);
}

QTEST_MAIN(PaneHistoryTest)
#include "PaneHistoryTest.moc"
