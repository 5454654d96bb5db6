#include "tags/MaxLengthTextField.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QTest>

using namespace Qt::StringLiterals;

class MaxLengthTextFieldTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void theTwentyFirstCharacterBeepsAndGoes();
    void aLongTextThatIsPutInIsCut();
    void aCharacterIsWhatAReaderCounts();
    void theCaretStaysWhereOneTypes();
    void aCompositionIsNotCutBeforeItsEnd();
    void aCommitThatBeginsTheNextCompositionIsCutAtItsEnd();
    void anotherLimitMayBeSet();
    void pastingIsLeftToTheOwner();
    void theMiddleButtonPastesNothing();
    void theRingIsThereWithTheFocusOnly();

private:
    void compose(const QString &preedit, const QString &commit = {});

    std::unique_ptr<MaxLengthTextField> m_field;
    int m_beeps = 0;
};

void MaxLengthTextFieldTest::init()
{
    m_field = std::make_unique<MaxLengthTextField>(systemColors(ColorScheme::Light));
    m_field->setBoxSize({200, 24});
    m_beeps = 0;
    m_field->onTooLong = [this] { ++m_beeps; };
}

void MaxLengthTextFieldTest::compose(const QString &preedit, const QString &commit)
{
    QInputMethodEvent event(preedit, {});
    event.setCommitString(commit);
    QCoreApplication::sendEvent(m_field.get(), &event);
}

void MaxLengthTextFieldTest::theTwentyFirstCharacterBeepsAndGoes()
{
    QTest::keyClicks(m_field.get(), u"abcdefghijklmnopqrst"_s);
    QCOMPARE(m_field->text(), u"abcdefghijklmnopqrst"_s);
    QCOMPARE(m_beeps, 0);
    QTest::keyClicks(m_field.get(), u"u"_s);
    QCOMPARE(m_field->text(), u"abcdefghijklmnopqrst"_s);
    QCOMPARE(m_beeps, 1);
}

void MaxLengthTextFieldTest::aLongTextThatIsPutInIsCut()
{
    m_field->insert(QString(500, u'x'));
    QCOMPARE(m_field->text(), QString(20, u'x'));
    QCOMPARE(m_beeps, 1);
}

void MaxLengthTextFieldTest::aCharacterIsWhatAReaderCounts()
{
    const QString family = u"\U0001F469\u200D\U0001F469\u200D\U0001F467"_s;
    m_field->insert(family.repeated(20));
    QCOMPARE(m_beeps, 0);
    m_field->insert(family);
    QCOMPARE(m_field->text(), family.repeated(20));
    QCOMPARE(m_beeps, 1);
}

void MaxLengthTextFieldTest::theCaretStaysWhereOneTypes()
{
    m_field->setText(u"abcdefghijklmnopqrst"_s);
    m_field->setCursorPosition(2);
    QTest::keyClicks(m_field.get(), u"X"_s);
    QCOMPARE(m_field->text(), u"abXcdefghijklmnopqrs"_s);
    QCOMPARE(m_field->cursorPosition(), 3);
}

void MaxLengthTextFieldTest::aCompositionIsNotCutBeforeItsEnd()
{
    m_field->setText(QString(19, u'x'));
    compose(u"ni hao"_s);
    QCOMPARE(m_beeps, 0);
    compose({}, u"你好"_s);
    QCOMPARE(m_field->text(), QString(19, u'x') + u'你');
    QCOMPARE(m_beeps, 1);
}

void MaxLengthTextFieldTest::aCommitThatBeginsTheNextCompositionIsCutAtItsEnd()
{
    m_field->setText(QString(19, u'x'));
    compose(u"ma"_s, u"你好"_s);
    QCOMPARE(m_field->text(), QString(19, u'x') + u"你好"_s);
    QCOMPARE(m_beeps, 0);
    compose({});
    QCOMPARE(m_field->text(), QString(19, u'x') + u'你');
    QCOMPARE(m_beeps, 1);
}

void MaxLengthTextFieldTest::anotherLimitMayBeSet()
{
    m_field->setCharacterLimit(3);
    m_field->insert(u"abcd"_s);
    QCOMPARE(m_field->text(), u"abc"_s);
}

void MaxLengthTextFieldTest::pastingIsLeftToTheOwner()
{
    int wanted = 0;
    connect(m_field.get(), &TextField::pastePressed, this, [&wanted] { ++wanted; });
    QTest::keyClick(m_field.get(), Qt::Key_V, Qt::ControlModifier);
    QTest::keyClick(m_field.get(), Qt::Key_Insert, Qt::ShiftModifier);
    QCOMPARE(wanted, 2);
    QVERIFY(m_field->text().isEmpty());
    QCOMPARE(m_field->contextMenuPolicy(), Qt::NoContextMenu);
}

void MaxLengthTextFieldTest::theMiddleButtonPastesNothing()
{
    QGuiApplication::clipboard()->setText(u"other"_s, QClipboard::Selection);
    QTest::mouseClick(m_field.get(), Qt::MiddleButton);
    QVERIFY(m_field->text().isEmpty());
}

void MaxLengthTextFieldTest::theRingIsThereWithTheFocusOnly()
{
    QCOMPARE(m_field->size(), QSize(204, 28));
    m_field->show();
    m_field->activateWindow();
    m_field->setFocus();
    QTRY_VERIFY(m_field->hasFocus());
    const QPoint inRing(100, 1);
    const QPoint onLine(100, 2);
    const SystemColors colors = systemColors(ColorScheme::Light);
    QCOMPARE(m_field->grab().toImage().pixelColor(onLine), colors.controlAccentColor);
    const QColor ring = m_field->grab().toImage().pixelColor(inRing);
    m_field->clearFocus();
    QVERIFY(m_field->grab().toImage().pixelColor(inRing) != ring);
    QVERIFY(m_field->grab().toImage().pixelColor(onLine) != colors.controlAccentColor);
}

QTEST_MAIN(MaxLengthTextFieldTest)
#include "MaxLengthTextFieldTest.moc"
