#include "window/SearchField.h"

#include "tests/fakes/FakeScheduler.h"

#include <QInputMethodEvent>
#include <QTest>

using namespace Qt::StringLiterals;

class SearchFieldTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void placeholderStandsOnTheLineOfTheText_data();
    void placeholderStandsOnTheLineOfTheText();
    void placeholderGivesWayToTextAndToAComposition();

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

QTEST_MAIN(SearchFieldTest)
#include "SearchFieldTest.moc"
