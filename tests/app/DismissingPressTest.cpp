#include "app/DismissingPress.h"

#include "tests/fakes/FakeScheduler.h"

#include <QTest>

using namespace std::chrono_literals;

class DismissingPressTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void clickWithoutAPressIsNotTaken();
    void clickThatEndsThePressIsTaken();
    void onlyOneClickIsTaken();
    void clickThatComesTooLateIsNotTaken();
    void laterPressBeginsAnew();

private:
    std::unique_ptr<FakeScheduler> m_scheduler;
    std::unique_ptr<DismissingPress> m_press;
};

void DismissingPressTest::init()
{
    m_press.reset();
    m_scheduler = std::make_unique<FakeScheduler>();
    m_press = std::make_unique<DismissingPress>(*m_scheduler);
}

void DismissingPressTest::clickWithoutAPressIsNotTaken()
{
    QVERIFY(!m_press->takeClick());
}

void DismissingPressTest::clickThatEndsThePressIsTaken()
{
    m_press->note();
    m_scheduler->advance(499ms);
    QVERIFY(m_press->takeClick());
}

void DismissingPressTest::onlyOneClickIsTaken()
{
    m_press->note();
    QVERIFY(m_press->takeClick());
    QVERIFY(!m_press->takeClick());
}

void DismissingPressTest::clickThatComesTooLateIsNotTaken()
{
    m_press->note();
    m_scheduler->advance(500ms);
    QVERIFY(!m_press->takeClick());
}

void DismissingPressTest::laterPressBeginsAnew()
{
    m_press->note();
    m_scheduler->advance(400ms);
    m_press->note();
    m_scheduler->advance(400ms);
    QVERIFY(m_press->takeClick());
}

QTEST_MAIN(DismissingPressTest)
#include "DismissingPressTest.moc"
