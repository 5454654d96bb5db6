#include "widgets/AlertSheet.h"

#include "widgets/PushButton.h"

#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class AlertSheetTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void theWholeWindowIsVeiled_data();
    void theWholeWindowIsVeiled();
    void theAffirmativeButtonIsAtTheRightEdge();
    void theFieldHasTheFocus();
    void aQuestionThatDestroysBeginsAtCancel();
    void returnConfirms();
    void returnInTheFieldConfirmsOnce();
    void escapeCancels();
    void returnOnCancelCancels();
    void clicksOnTheButtonsAnswer();
    void onlyTheFirstAnswerCounts();
    void tabGoesRoundWithinTheSheet();
    void theFocusCannotBeTakenBelow();
    void theFocusGoesBackAfterwards();
    void pressesAndKeysDoNotReachTheWindow();
    void itFollowsTheSizeOfTheWindow();
    void itEndsWithTheWindow();
    void aLongTextTakesTwoLines();

private:
    AlertSheet &open(AlertSheet::Kind kind = AlertSheet::Kind::Plain, bool hasField = true,
                     ColorScheme scheme = ColorScheme::Light);
    PushButton &button(const QString &name) const
    {
        return *m_sheet->findChild<PushButton *>(name);
    }
    PushButton &confirmButton() const { return button(u"confirmButton"_s); }
    PushButton &cancelButton() const { return button(u"cancelButton"_s); }

    std::unique_ptr<QWidget> m_window;
    QLineEdit *m_below = nullptr;
    QPointer<AlertSheet> m_sheet;
    QLineEdit *m_field = nullptr;
    int m_confirmed = 0;
    int m_cancelled = 0;
};

void AlertSheetTest::init()
{
    m_confirmed = 0;
    m_cancelled = 0;
    m_window = std::make_unique<QWidget>();
    m_window->resize(680, 500);
    m_below = new QLineEdit(m_window.get());
    m_below->setGeometry(20, 20, 600, 400);
    m_window->show();
    m_window->activateWindow();
    m_below->setFocus();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
}

void AlertSheetTest::cleanup()
{
    m_window.reset();
}

AlertSheet &AlertSheetTest::open(AlertSheet::Kind kind, bool hasField, ColorScheme scheme)
{
    m_sheet = new AlertSheet({.title = u"New Tag"_s,
                              .information = u"Enter a name:"_s,
                              .confirm = u"OK"_s,
                              .cancel = u"Cancel"_s},
                             kind, {scheme, true}, m_window.get());
    if (hasField) {
        m_field = new QLineEdit;
        m_field->setFixedSize(204, 28);
        m_sheet->setAccessoryView(m_field, 2);
    }
    connect(m_sheet, &AlertSheet::confirmed, this, [this] { ++m_confirmed; });
    connect(m_sheet, &AlertSheet::cancelled, this, [this] { ++m_cancelled; });
    m_sheet->open();
    return *m_sheet;
}

void AlertSheetTest::theWholeWindowIsVeiled_data()
{
    QTest::addColumn<ColorScheme>("scheme");
    QTest::addColumn<int>("lightness");
    QTest::newRow("light") << ColorScheme::Light << qRound(255 * 0.84);
    QTest::newRow("dark") << ColorScheme::Dark << qRound(255 * 0.64);
}

void AlertSheetTest::theWholeWindowIsVeiled()
{
    QFETCH(const ColorScheme, scheme);
    QFETCH(const int, lightness);
    QPalette white = m_window->palette();
    white.setColor(QPalette::Window, Qt::white);
    m_window->setPalette(white);
    open(AlertSheet::Kind::Plain, true, scheme);
    const QImage picture = m_window->grab().toImage();
    for (const QPoint &corner : {QPoint(1, 1), QPoint(678, 498)})
        QVERIFY(std::abs(picture.pixelColor(corner).red() - lightness) <= 1);
    QCOMPARE(picture.pixelColor(340, 148), systemColors(scheme).raisedSurfaceColor);
}

void AlertSheetTest::theAffirmativeButtonIsAtTheRightEdge()
{
    open();
    QCOMPARE(confirmButton().height(), 28);
    QCOMPARE(confirmButton().y(), cancelButton().y());
    QCOMPARE(cancelButton().geometry().right() + 1 + 8, confirmButton().x());
    // The card is 300 wide and stands in the middle.
    QCOMPARE(confirmButton().geometry().right() + 1, (680 + 300) / 2 - 20);
    QCOMPARE(m_field->x() + 2, (680 - 300) / 2 + 20);
    QCOMPARE(confirmButton().y() - (m_field->geometry().bottom() + 1 - 2), 18);
}

void AlertSheetTest::theFieldHasTheFocus()
{
    open();
    QVERIFY(m_field->hasFocus());
}

void AlertSheetTest::aQuestionThatDestroysBeginsAtCancel()
{
    open(AlertSheet::Kind::Destructive, false);
    QVERIFY(cancelButton().hasFocus());
    QVERIFY(cancelButton().isFocusVisible());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QCOMPARE(m_cancelled, 1);
    QCOMPARE(m_confirmed, 0);
}

void AlertSheetTest::returnConfirms()
{
    open(AlertSheet::Kind::Plain, false);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QCOMPARE(m_confirmed, 1);
    QVERIFY(!m_sheet->isVisible());
    QTRY_VERIFY(!m_sheet);
}

void AlertSheetTest::returnInTheFieldConfirmsOnce()
{
    open();
    QTest::keyClick(m_field, Qt::Key_Enter);
    QCOMPARE(m_confirmed, 1);
    QCOMPARE(m_cancelled, 0);
}

void AlertSheetTest::escapeCancels()
{
    open();
    QTest::keyClick(m_field, Qt::Key_Escape);
    QCOMPARE(m_cancelled, 1);
    QCOMPARE(m_confirmed, 0);
    QVERIFY(!m_sheet->isVisible());
}

void AlertSheetTest::returnOnCancelCancels()
{
    open();
    QTest::keyClick(m_field, Qt::Key_Tab);
    QVERIFY(cancelButton().hasFocus());
    QTest::keyClick(&cancelButton(), Qt::Key_Return);
    QCOMPARE(m_cancelled, 1);
    QCOMPARE(m_confirmed, 0);
}

void AlertSheetTest::clicksOnTheButtonsAnswer()
{
    open();
    QTest::mouseClick(&confirmButton(), Qt::LeftButton);
    QCOMPARE(m_confirmed, 1);
    open();
    QTest::mouseClick(&cancelButton(), Qt::LeftButton);
    QCOMPARE(m_cancelled, 1);
}

void AlertSheetTest::onlyTheFirstAnswerCounts()
{
    AlertSheet &sheet = open();
    sheet.confirm();
    sheet.cancel();
    sheet.confirm();
    QCOMPARE(m_confirmed, 1);
    QCOMPARE(m_cancelled, 0);
}

void AlertSheetTest::tabGoesRoundWithinTheSheet()
{
    open();
    const QWidgetList order{&cancelButton(), &confirmButton(), m_field, &cancelButton()};
    for (QWidget *expected : order) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), expected);
    }
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
    QCOMPARE(QApplication::focusWidget(), m_field);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
    QCOMPARE(QApplication::focusWidget(), &confirmButton());
}

void AlertSheetTest::theFocusCannotBeTakenBelow()
{
    open();
    QTest::keyClick(m_field, Qt::Key_Tab);
    m_below->setFocus();
    QCOMPARE(QApplication::focusWidget(), &cancelButton());
}

void AlertSheetTest::theFocusGoesBackAfterwards()
{
    open();
    QTest::keyClick(m_field, Qt::Key_Escape);
    QVERIFY(m_below->hasFocus());
}

void AlertSheetTest::pressesAndKeysDoNotReachTheWindow()
{
    int keys = 0;
    QObject::connect(m_below, &QLineEdit::textEdited, this, [&keys] { ++keys; });
    open(AlertSheet::Kind::Plain, false);
    QTest::mouseClick(m_window->windowHandle(), Qt::LeftButton, {}, {40, 40});
    for (const Qt::Key key : {Qt::Key_A, Qt::Key_Down, Qt::Key_Delete})
        QTest::keyClick(m_window->windowHandle(), key);
    QCOMPARE(keys, 0);
    QVERIFY(!m_below->hasFocus());
    QVERIFY(m_sheet->isVisible());
}

void AlertSheetTest::itFollowsTheSizeOfTheWindow()
{
    open();
    const int before = confirmButton().y();
    m_window->resize(680, 244);
    QCOMPARE(m_sheet->size(), QSize(680, 244));
    QVERIFY(confirmButton().y() < before);
    QVERIFY(confirmButton().geometry().bottom() + 20 < 244);
}

void AlertSheetTest::itEndsWithTheWindow()
{
    open();
    m_window.reset();
    QVERIFY(!m_sheet);
    QCOMPARE(m_confirmed, 0);
}

void AlertSheetTest::aLongTextTakesTwoLines()
{
    open(AlertSheet::Kind::Destructive, false);
    const int oneLine = cancelButton().y();
    m_sheet->cancel();
    AlertSheet longer({.title = u"Delete Tag"_s,
                       .information = u"Are you sure that this is to go? It goes from every "
                                      "entry that has it, and does not come back."_s,
                       .confirm = u"Delete"_s,
                       .cancel = u"Cancel"_s},
                      AlertSheet::Kind::Destructive, {}, m_window.get());
    longer.open();
    auto *cancel = longer.findChild<PushButton *>(u"cancelButton"_s);
    QVERIFY(cancel->y() > oneLine);
    auto *confirm = longer.findChild<PushButton *>(u"confirmButton"_s);
    QCOMPARE(confirm->geometry().right() + 1, (680 + 322) / 2 - 20);
}

QTEST_MAIN(AlertSheetTest)
#include "AlertSheetTest.moc"
