#include "window/ShellKeeper.h"

#include "tests/fakes/FakeWorkspace.h"

#include <QApplication>
#include <QLineEdit>
#include <QPointer>
#include <QTest>
#include <QWindow>

namespace {

constexpr HistoryWindowStyle kGlass{.cornerRadius = 28, .selectionRadius = 18, .isTranslucent = true};
constexpr HistoryWindowStyle kPlain{.cornerRadius = 20,
                                    .selectionRadius = 10,
                                    .isTranslucent = false};

} // namespace

class ShellKeeperTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void theNextOpeningGetsTheSameWindow();
    void aWindowThatIsLentIsNotLentAgain();
    void ofTwoThatComeBackTheLaterIsKept();
    void anotherKindOfWindowIsMadeAnew();
    void aWindowWithWhichTheDesktopHasNotDoneIsMadeAnew();
    void aWindowThatIsNotOnTheDesktopYetIsNotAskedAbout();
    void aWindowThatComesBackIsHidden();
    void nothingInAHiddenWindowHasTheFocus();
    void contentThatEndsLeavesTheWindowUsable();

private:
    std::unique_ptr<FakeWorkspace> m_workspace;
    std::unique_ptr<ShellKeeper> m_keeper;
};

void ShellKeeperTest::init()
{
    m_workspace = std::make_unique<FakeWorkspace>();
    m_keeper = std::make_unique<ShellKeeper>(*m_workspace);
}

void ShellKeeperTest::cleanup()
{
    m_keeper.reset();
    QVERIFY(QApplication::topLevelWidgets().isEmpty());
}

void ShellKeeperTest::theNextOpeningGetsTheSameWindow()
{
    ShellKeeper::LentShell shell = m_keeper->lend(kGlass);
    const WId window = shell->winId();
    shell.reset();
    shell = m_keeper->lend(kGlass);
    QCOMPARE(shell->winId(), window);
}

void ShellKeeperTest::aWindowThatIsLentIsNotLentAgain()
{
    const ShellKeeper::LentShell first = m_keeper->lend(kGlass);
    const ShellKeeper::LentShell second = m_keeper->lend(kGlass);
    QVERIFY(first.get() != second.get());
}

void ShellKeeperTest::ofTwoThatComeBackTheLaterIsKept()
{
    ShellKeeper::LentShell first = m_keeper->lend(kGlass);
    ShellKeeper::LentShell second = m_keeper->lend(kGlass);
    const QPointer<WindowShell> earlier = first.get();
    const WindowShell *later = second.get();
    first.reset();
    second.reset();
    QVERIFY(!earlier);
    QCOMPARE(m_keeper->lend(kGlass).get(), later);
}

void ShellKeeperTest::anotherKindOfWindowIsMadeAnew()
{
    const QPointer<WindowShell> glass = m_keeper->lend(kGlass).get();
    const ShellKeeper::LentShell plain = m_keeper->lend(kPlain);
    QVERIFY(!glass);
    QVERIFY(plain->style() == kPlain);
    QVERIFY(!plain->testAttribute(Qt::WA_TranslucentBackground));
}

void ShellKeeperTest::aWindowWithWhichTheDesktopHasNotDoneIsMadeAnew()
{
    ShellKeeper::LentShell shell = m_keeper->lend(kGlass);
    const QPointer<WindowShell> former = shell.get();
    shell->winId();
    shell.reset();
    m_workspace->isWindowWithdrawn = false;
    shell = m_keeper->lend(kGlass);
    QVERIFY(!former);
    QVERIFY(shell);
}

void ShellKeeperTest::aWindowThatIsNotOnTheDesktopYetIsNotAskedAbout()
{
    m_workspace->isWindowWithdrawn = false;
    const WindowShell *former = m_keeper->lend(kGlass).get();
    QCOMPARE(m_keeper->lend(kGlass).get(), former);
}

void ShellKeeperTest::aWindowThatComesBackIsHidden()
{
    ShellKeeper::LentShell shell = m_keeper->lend(kGlass);
    shell->show();
    const WindowShell *window = shell.get();
    shell.reset();
    QVERIFY(!window->isVisible());
}

void ShellKeeperTest::nothingInAHiddenWindowHasTheFocus()
{
    ShellKeeper::LentShell shell = m_keeper->lend(kGlass);
    QLineEdit field(shell.get());
    shell->setContent(field);
    field.setFocus();
    shell->show();
    shell->activateWindow();
    QTRY_COMPARE(QApplication::focusWidget(), &field);
    // At once, and not when the desktop tells of it: what is shown next may have it by then.
    shell->hide();
    QVERIFY(!QApplication::focusWidget());
    QVERIFY(!QGuiApplication::focusWindow());
    QVERIFY(!shell->isActiveWindow());
}

void ShellKeeperTest::contentThatEndsLeavesTheWindowUsable()
{
    const ShellKeeper::LentShell shell = m_keeper->lend(kGlass);
    {
        QLineEdit former(shell.get());
        shell->setContent(former);
    }
    shell->resize(300, 200);
    QLineEdit content(shell.get());
    shell->setContent(content);
    shell->resize(400, 300);
    shell->show();
    QCOMPARE(content.size(), QSize(400, 300));
    QVERIFY(content.isVisible());
}

QTEST_MAIN(ShellKeeperTest)
#include "ShellKeeperTest.moc"
