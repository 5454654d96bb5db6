#include "window/SearchField.h"

#include "tests/fakes/FakeScheduler.h"

#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QPaintEvent>
#include <QStyleHints>
#include <QTest>

using namespace Qt::StringLiterals;

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

private:
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
    QInputMethodEvent composing(u" "_s, {});
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
    m_field->show();
    m_field->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_field.get()));
    m_field->setFocus();
    QTRY_VERIFY(m_field->hasFocus());
    QCoreApplication::sendPostedEvents();
    PaintedRegion painted(*m_field);
    m_scheduler.advance(std::chrono::milliseconds(QGuiApplication::styleHints()->cursorFlashTime()));
    QTRY_VERIFY(!painted.region().isEmpty());
    QVERIFY(painted.region().boundingRect().width() <= 2);
}

QTEST_MAIN(SearchFieldTest)
#include "SearchFieldTest.moc"
