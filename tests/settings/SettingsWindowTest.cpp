#include "settings/SettingsWindow.h"

#include "widgets/DrawnControl.h"
#include "settings/SettingsPicker.h"
#include "tests/settings/SettingsStage.h"

#include <QAccessible>
#include <QLabel>
#include <QMenu>
#include <QScreen>
#include <QTest>

using namespace Qt::StringLiterals;

class SettingsWindowTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void itIsAsLargeAsItShouldBe();
    void itStaysInFrontAndHasTheDesktopsFrame();
    void itIsBroughtForwardWithTheFocus();
    void itBeginsWithTheFirstPane();
    void theTitleIsThatOfThePane();
    void backAndForwardGoAmongThePanes();
    void aNewPaneForgetsTheWayForward();
    void arrowKeysGoFromPaneToPane();
    void closingTellsTheOwner();
    void aClosedWindowMayBeDroppedSoonAfter();

    void aLanguageIsChosenAtOnce();
    void aChangeOfLanguageChangesAllTextsAndTheTitle();
    void theTitleNamesThePaneAgainAfterTheNextChangeOfPane();
    void theLanguageMenuHasAllLanguagesAndMarksThePresentOne();
    void thePresentLanguageLiesOverThePicker();
    void thePinButtonIsShownUntilThePersonSaysOtherwise();
    void thePinSwitchWritesAtOnceAndTells();
    void aStoredPinSettingIsShown();
    void theVersionIsTold();

    void lightAndDarkChangeInTheOpenWindow();
    void theDesktopsPaletteDecidesWhereNothingElseDoes();
    void theRingIsSeenAfterTheTabKeyAndNotAfterAClick();
    void theRingIsThereAgainAfterAnotherWindow();
    void theTabKeyGoesFromTheListToTheBarAndThePane();
    void everyControlThatCanBeReachedHasAName();
    void controlsAreWorkedByThoseWhoDoNotSee();
    void returnPressesAControl();
    void nothingIsWrittenByLooking();

private:
    template <typename Widget = QAbstractButton>
    Widget *find(const char *objectName)
    {
        return m_window->view().findChild<Widget *>(QString::fromLatin1(objectName));
    }

    void click(const char *objectName) { QTest::mouseClick(find(objectName), Qt::LeftButton); }

    QMenu *openLanguageMenu()
    {
        click("languagePicker");
        return find<SettingsPicker>("languagePicker")->findChild<QMenu *>();
    }

    QString title() { return m_window->view().windowTitle(); }

    std::unique_ptr<SettingsStage> m_stage;
    std::unique_ptr<SettingsWindow> m_window;
};

void SettingsWindowTest::init()
{
    m_stage = std::make_unique<SettingsStage>();
    m_stage->appearance.dark = false;
    m_window = std::make_unique<SettingsWindow>(m_stage->collaborators());
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(&m_window->view()));
}

void SettingsWindowTest::cleanup()
{
    m_window.reset();
    m_stage.reset();
}

void SettingsWindowTest::itIsAsLargeAsItShouldBe()
{
    QCOMPARE(m_window->view().size(), QSize(760, 540));
    QCOMPARE(m_window->view().minimumSize(), QSize(700, 500));
    const QPoint middle = m_window->view().screen()->availableGeometry().center();
    QVERIFY((m_window->view().geometry().center() - middle).manhattanLength() <= 2);
}

void SettingsWindowTest::itStaysInFrontAndHasTheDesktopsFrame()
{
    const Qt::WindowFlags flags = m_window->view().windowFlags();
    QVERIFY(flags.testFlag(Qt::WindowStaysOnTopHint));
    QVERIFY(flags.testFlag(Qt::WindowCloseButtonHint));
    QVERIFY(!flags.testFlag(Qt::FramelessWindowHint));
    QVERIFY(!m_window->view().testAttribute(Qt::WA_QuitOnClose));
}

void SettingsWindowTest::itIsBroughtForwardWithTheFocus()
{
    QCOMPARE(m_stage->workspace.ownActivationCount, 1);
    m_window->show();
    QCOMPARE(m_stage->workspace.ownActivationCount, 2);
    QVERIFY(m_window->isVisible());
}

void SettingsWindowTest::itBeginsWithTheFirstPane()
{
    QCOMPARE(title(), u"General"_s);
    QVERIFY(find("pane.gearshape")->isChecked());
    QVERIFY(find("languagePicker")->isVisible());
    QVERIFY(!find("backButton")->isEnabled());
    QVERIFY(!find("forwardButton")->isEnabled());
}

void SettingsWindowTest::theTitleIsThatOfThePane()
{
    click("pane.keyboard");
    QCOMPARE(title(), u"Shortcuts"_s);
    QVERIFY(find("recordButton")->isVisible());
    QVERIFY(!find("languagePicker")->isVisible());
    click("pane.info.circle");
    QCOMPARE(title(), u"About"_s);
}

void SettingsWindowTest::backAndForwardGoAmongThePanes()
{
    click("pane.keyboard");
    click("pane.info.circle");
    click("backButton");
    QCOMPARE(title(), u"Shortcuts"_s);
    QVERIFY(find("pane.keyboard")->isChecked());
    click("backButton");
    QCOMPARE(title(), u"General"_s);
    QVERIFY(!find("backButton")->isEnabled());
    click("forwardButton");
    QCOMPARE(title(), u"Shortcuts"_s);
    QVERIFY(find("forwardButton")->isEnabled());
}

void SettingsWindowTest::aNewPaneForgetsTheWayForward()
{
    click("pane.keyboard");
    click("backButton");
    click("pane.info.circle");
    QVERIFY(!find("forwardButton")->isEnabled());
    click("backButton");
    QCOMPARE(title(), u"General"_s);
}

void SettingsWindowTest::arrowKeysGoFromPaneToPane()
{
    find("pane.gearshape")->setFocus(Qt::TabFocusReason);
    QTest::keyClick(m_window->view().focusWidget(), Qt::Key_Down);
    QCOMPARE(title(), u"Shortcuts"_s);
    QCOMPARE(m_window->view().focusWidget(), find("pane.keyboard"));
    QTest::keyClick(m_window->view().focusWidget(), Qt::Key_Up);
    QCOMPARE(title(), u"General"_s);
}

void SettingsWindowTest::closingTellsTheOwner()
{
    int closedCount = 0;
    m_window->onClosed = [&] { ++closedCount; };
    m_window->close();
    QCOMPARE(closedCount, 1);
    QVERIFY(!m_window->isVisible());
}

void SettingsWindowTest::aClosedWindowMayBeDroppedSoonAfter()
{
    click("pane.keyboard");
    click("recordButton");
    m_window->onClosed = [this] {
        QMetaObject::invokeMethod(
            qApp, [this] { m_window.reset(); }, Qt::QueuedConnection);
    };
    m_window->view().close();
    QTRY_VERIFY(!m_window);
    // A recorder that still listened would touch what has gone.
    QWidget other;
    QTest::keyClick(&other, Qt::Key_A);
    QVERIFY(!m_stage->appearance.onChanged);
}

void SettingsWindowTest::aLanguageIsChosenAtOnce()
{
    QMenu *menu = openLanguageMenu();
    QVERIFY(menu && menu->isVisible());
    QTest::keyClick(menu, Qt::Key_Down);
    QTest::keyClick(menu, Qt::Key_Return);
    QCOMPARE(m_stage->languages.currentLanguage(), AppLanguage::Chinese);
    QCOMPARE(find("languagePicker")->text(), u"简体中文"_s);
}

void SettingsWindowTest::aChangeOfLanguageChangesAllTextsAndTheTitle()
{
    click("pane.keyboard");
    m_stage->languages.setLanguage(AppLanguage::Chinese);
    m_window->refreshLanguage();
    QCOMPARE(title(), u"设置"_s);
    QCOMPARE(find("pane.keyboard")->text(), u"快捷键"_s);
    QCOMPARE(find("recordButton")->text(), u"录制"_s);
    QCOMPARE(find("backButton")->accessibleName(), u"后退"_s);
}

void SettingsWindowTest::theTitleNamesThePaneAgainAfterTheNextChangeOfPane()
{
    m_stage->languages.setLanguage(AppLanguage::Chinese);
    m_window->refreshLanguage();
    click("pane.info.circle");
    QCOMPARE(title(), u"关于"_s);
}

void SettingsWindowTest::theLanguageMenuHasAllLanguagesAndMarksThePresentOne()
{
    const QMenu *menu = openLanguageMenu();
    QStringList texts;
    QStringList marked;
    for (const QAction *action : menu->actions()) {
        texts += action->text();
        if (action->isChecked())
            marked += action->text();
    }
    QCOMPARE(texts, QStringList({u"Follow System"_s, u"English"_s, u"简体中文"_s}));
    QCOMPARE(marked, QStringList{u"English"_s});
}

void SettingsWindowTest::thePresentLanguageLiesOverThePicker()
{
    const QMenu *menu = openLanguageMenu();
    const QRect item = menu->actionGeometry(menu->actions().at(1));
    const QWidget *picker = find("languagePicker");
    QCOMPARE(menu->mapToGlobal(item.topLeft()).y(), picker->mapToGlobal(QPoint()).y());
    QCOMPARE(item.height(), picker->height());
}

void SettingsWindowTest::thePinButtonIsShownUntilThePersonSaysOtherwise()
{
    QVERIFY(find("pinButtonSwitch")->isChecked());
}

void SettingsWindowTest::thePinSwitchWritesAtOnceAndTells()
{
    const QString key = u"ClipboardSearchWindowShowsPinButton"_s;
    QList<bool> stored;
    m_window->onPinButtonVisibilityChanged = [&] { stored.append(m_stage->defaults.boolean(key)); };
    click("pinButtonSwitch");
    click("pinButtonSwitch");
    QCOMPARE(stored, QList<bool>({false, true}));
}

void SettingsWindowTest::aStoredPinSettingIsShown()
{
    m_stage->defaults.set(u"ClipboardSearchWindowShowsPinButton"_s, false);
    m_window = std::make_unique<SettingsWindow>(m_stage->collaborators());
    QVERIFY(!find("pinButtonSwitch")->isChecked());
}

void SettingsWindowTest::theVersionIsTold()
{
    QCoreApplication::setApplicationVersion(u"3.1.4"_s);
    m_window = std::make_unique<SettingsWindow>(m_stage->collaborators());
    QCOMPARE(find<QLabel>("version")->text(), u"Version 3.1.4"_s);
}

void SettingsWindowTest::lightAndDarkChangeInTheOpenWindow()
{
    const auto ground = [this] { return m_window->view().grab().toImage().pixelColor(400, 500); };
    QCOMPARE(ground(), systemColors(ColorScheme::Light).windowBackgroundColor);
    m_stage->appearance.dark = true;
    m_stage->appearance.onChanged();
    QCOMPARE(ground(), systemColors(ColorScheme::Dark).windowBackgroundColor);
}

void SettingsWindowTest::theDesktopsPaletteDecidesWhereNothingElseDoes()
{
    const QPalette before = QGuiApplication::palette();
    m_stage->appearance.dark.reset();
    QGuiApplication::setPalette(QPalette(QColor(40, 40, 40)));
    QCoreApplication::processEvents();
    const QColor ground = m_window->view().grab().toImage().pixelColor(400, 500);
    QGuiApplication::setPalette(before);
    QCOMPARE(ground, systemColors(ColorScheme::Dark).windowBackgroundColor);
}

void SettingsWindowTest::theRingIsSeenAfterTheTabKeyAndNotAfterAClick()
{
    auto *control = find<DrawnControl>("pinButtonSwitch");
    auto *ring = find<QWidget>("focusRing");
    click("pinButtonSwitch");
    QVERIFY(control->hasFocus());
    QVERIFY(!ring->isVisible());
    QTest::keyClick(control, Qt::Key_Backtab);
    QVERIFY(ring->isVisible());
    QTest::keyClick(m_window->view().focusWidget(), Qt::Key_Tab);
    QVERIFY(control->hasFocus());
    const QRect around(control->mapTo(&m_window->view(), QPoint()), control->size());
    QCOMPARE(ring->geometry().center(), around.center());
    QVERIFY(ring->geometry().contains(around.adjusted(-3, -3, 3, 3)));
    // It stands in nobody's way.
    QVERIFY(ring->testAttribute(Qt::WA_TransparentForMouseEvents));
}

void SettingsWindowTest::theRingIsThereAgainAfterAnotherWindow()
{
    const auto *ring = find<QWidget>("focusRing");
    find("languagePicker")->setFocus(Qt::TabFocusReason);
    QVERIFY(ring->isVisible());
    QWidget other;
    other.show();
    other.activateWindow();
    QTRY_VERIFY(!ring->isVisible());
    m_window->view().activateWindow();
    QTRY_VERIFY(ring->isVisible());
}

void SettingsWindowTest::theTabKeyGoesFromTheListToTheBarAndThePane()
{
    click("pane.keyboard");
    QStringList visited;
    for (int i = 0; i < 9; ++i) {
        visited += m_window->view().focusWidget()->objectName();
        QTest::keyClick(m_window->view().focusWidget(), Qt::Key_Tab);
    }
    QCOMPARE(visited, QStringList({u"pane.keyboard"_s, u"backButton"_s, u"cmdToggle"_s,
                                   u"shiftToggle"_s, u"optionToggle"_s, u"controlToggle"_s,
                                   u"keyPicker"_s, u"recordButton"_s, u"pane.keyboard"_s}));
}

void SettingsWindowTest::everyControlThatCanBeReachedHasAName()
{
    const auto controls = m_window->view().findChildren<DrawnControl *>();
    QVERIFY(controls.size() > 10);
    for (const DrawnControl *control : controls)
        QVERIFY2(!control->accessibleName().isEmpty() || !control->text().isEmpty(),
                 qPrintable(control->objectName()));
}

void SettingsWindowTest::controlsAreWorkedByThoseWhoDoNotSee()
{
    const auto spoken = [this](const char *name) {
        return QAccessible::queryAccessibleInterface(find(name));
    };
    QCOMPARE(QAccessible::queryAccessibleInterface(&m_window->view())->role(), QAccessible::Window);
    QAccessibleInterface *pane = spoken("pane.keyboard");
    QCOMPARE(pane->role(), QAccessible::RadioButton);
    QVERIFY(!pane->state().checked);
    pane->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    QTRY_VERIFY(find("cmdToggle")->isVisible());
    QVERIFY(pane->state().checked);
    QAccessibleInterface *picker = spoken("keyPicker");
    QCOMPARE(picker->text(QAccessible::Name), u"Key"_s);
    QCOMPARE(picker->text(QAccessible::Description), find("keyPicker")->text());
    QVERIFY(!picker->text(QAccessible::Description).isEmpty());
}

void SettingsWindowTest::returnPressesAControl()
{
    auto *control = find("pinButtonSwitch");
    control->setFocus();
    QTest::keyClick(control, Qt::Key_Return);
    QVERIFY(!control->isChecked());
    QTest::keyClick(control, Qt::Key_Space);
    QVERIFY(control->isChecked());
}

void SettingsWindowTest::nothingIsWrittenByLooking()
{
    click("pane.keyboard");
    click("pane.info.circle");
    m_window->close();
    for (const QString &key :
         {u"AppLanguage"_s, u"ClipboardSearchWindowShowsPinButton"_s, u"HotkeySettings"_s})
        QVERIFY2(!m_stage->defaults.contains(key), qPrintable(key));
}

QTEST_MAIN(SettingsWindowTest)
#include "SettingsWindowTest.moc"
