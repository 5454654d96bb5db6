#include "window/SearchField.h"

#include "tests/fakes/FakeScheduler.h"

#include "appearance/InterfaceFont.h"

#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QTextCharFormat>
#include <QPaintEvent>
#include <QStyleHints>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// What a widget has been asked to paint since.
class PaintedRegion : public QObject
{
public:
    explicit PaintedRegion(QWidget &widget) { widget.installEventFilter(this); }

    const QRegion &region() const { return m_region; }

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            m_region += static_cast<const QPaintEvent *>(event)->region();
        return false;
    }

private:
    QRegion m_region;
};

} // namespace

class SearchFieldTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void placeholderStandsOnTheLineOfTheText_data();
    void placeholderStandsOnTheLineOfTheText();
    void placeholderGivesWayToTextAndToAComposition();
    void aTextOfAnyLengthIsCut();
    void theCaretBlinksAlone();
    void theCaretStaysWhileAMenuIsOpen();
    void theCaretGrowsWithTheText();
    void aCompositionHasALineBelow_data();
    void aCompositionHasALineBelow();

private:
    void focusField();
    /// How many pixels of the accent colour there are below each other at the most.
    int caretHeight();
    QImage picture() { return m_field->grab().toImage(); }

    FakeScheduler m_scheduler;
    SystemColors m_colors;
    std::unique_ptr<SearchField> m_field;
};

void SearchFieldTest::init()
{
    m_field = std::make_unique<SearchField>(m_scheduler);
    m_field->resize(400, 36);
    m_colors = systemColors(ColorScheme::Light);
    m_colors.placeholderTextColor = m_colors.labelColor;
    m_field->setColors(m_colors);
}

void SearchFieldTest::focusField()
{
    m_field->show();
    m_field->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_field.get()));
    m_field->setFocus();
    QTRY_VERIFY(m_field->hasFocus());
}

int SearchFieldTest::caretHeight()
{
    const QImage image = picture();
    int height = 0;
    for (int y = 0; y < image.height(); ++y)
        height += image.pixel(0, y) == m_colors.controlAccentColor.rgba() ? 1 : 0;
    return height;
}

void SearchFieldTest::placeholderStandsOnTheLineOfTheText_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("English") << u"Search"_s;
    QTest::newRow("Chinese") << u"搜索"_s;
    QTest::newRow("both") << u"Search 搜索"_s;
}

void SearchFieldTest::placeholderStandsOnTheLineOfTheText()
{
    QFETCH(const QString, text);
    const QImage empty = picture();
    m_field->setPlaceholderText(text);
    const QImage placeholder = picture();
    m_field->setText(text);
    QVERIFY(placeholder != empty);
    QCOMPARE(placeholder, picture());
}

void SearchFieldTest::placeholderGivesWayToTextAndToAComposition()
{
    const QImage empty = picture();
    m_field->setPlaceholderText(u"Search"_s);
    QVERIFY(picture() != empty);
    m_field->setText(u" "_s);
    QCOMPARE(picture(), empty);
    m_field->clear();
    QInputMethodEvent composing(
        u" "_s, {{QInputMethodEvent::TextFormat, 0, 1, QTextCharFormat()}}); // No line.
    QCoreApplication::sendEvent(m_field.get(), &composing);
    QCOMPARE(picture(), empty);
    QInputMethodEvent finished;
    QCoreApplication::sendEvent(m_field.get(), &finished);
    QVERIFY(picture() != empty);
}

void SearchFieldTest::aTextOfAnyLengthIsCut()
{
    const QString marks = u"e"_s + QString(100'000, QChar(0x301));
    m_field->insert(marks);
    QCOMPARE(m_field->text(), marks.first(1000));
    m_field->insert(u"x"_s);
    QCOMPARE(m_field->text(), marks.first(1000));
}

void SearchFieldTest::theCaretBlinksAlone()
{
    m_field->setText(u"some words"_s);
    focusField();
    QCoreApplication::sendPostedEvents();
    PaintedRegion painted(*m_field);
    m_scheduler.advance(std::chrono::milliseconds(QGuiApplication::styleHints()->cursorFlashTime()));
    QTRY_VERIFY(!painted.region().isEmpty());
    QVERIFY(painted.region().boundingRect().width() <= 2);
}

void SearchFieldTest::theCaretStaysWhileAMenuIsOpen()
{
    focusField();
    QVERIFY(caretHeight() > 0);
    QFocusEvent toMenu(QEvent::FocusOut, Qt::PopupFocusReason);
    QCoreApplication::sendEvent(m_field.get(), &toMenu);
    m_scheduler.advance(5s);
    QVERIFY(caretHeight() > 0);
    QFocusEvent toWindow(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
    QCoreApplication::sendEvent(m_field.get(), &toWindow);
    QCOMPARE(caretHeight(), 0);
}

void SearchFieldTest::theCaretGrowsWithTheText()
{
    const auto restore = qScopeGuard([] { setInterfaceTextScale(1); });
    m_field->resize(400, 60);
    focusField();
    QCOMPARE(caretHeight(), 25);
    setInterfaceTextScale(1.3);
    m_field->refreshFont();
    QVERIFY(qAbs(caretHeight() - 32.5) <= 0.5);
}

void SearchFieldTest::aCompositionHasALineBelow_data()
{
    QTest::addColumn<bool>("isFormatted");
    QTest::newRow("by the input method") << true;
    QTest::newRow("by us") << false;
}

void SearchFieldTest::aCompositionHasALineBelow()
{
    QFETCH(const bool, isFormatted);
    const QString text = u"nihao"_s;
    m_field->setText(text);
    const QImage plain = picture();
    m_field->clear();
    QList<QInputMethodEvent::Attribute> attributes;
    if (isFormatted) {
        QTextCharFormat format;
        format.setUnderlineStyle(QTextCharFormat::SingleUnderline);
        attributes.append({QInputMethodEvent::TextFormat, 0, int(text.size()), format});
    }
    QInputMethodEvent composing(text, attributes);
    QCoreApplication::sendEvent(m_field.get(), &composing);
    const QImage composed = picture();
    QVERIFY(composed.copy(0, 0, 400, 20) == plain.copy(0, 0, 400, 20)); // The letters are as ever.
    const int middle = qRound(m_field->fontMetrics().horizontalAdvance(text) / 2.0);
    QList<int> lines;
    for (int y = 0; y < composed.height(); ++y) {
        bool isLine = true;
        for (int x = middle - 10; x < middle + 10; ++x)
            isLine = isLine && composed.pixel(x, y) == m_colors.labelColor.rgba();
        if (isLine)
            lines.append(y);
    }
    QCOMPARE(lines.size(), 1);
    QVERIFY(lines.first() > m_field->fontMetrics().ascent());
}

QTEST_MAIN(SearchFieldTest)
#include "SearchFieldTest.moc"
