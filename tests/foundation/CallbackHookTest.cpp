#include "foundation/CallbackHook.h"

#include <QStringList>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

class CallbackHookTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void theFormerListenerIsCalledToo();
    void aHookThatEndedIsNotCalled();
    void hooksEndInAnyOrder_data();
    void hooksEndInAnyOrder();
    void aHookMayEndInTheCall();
    void aHookMayBeMadeInTheCall();
    void theLastOneLeavesTheCallbackAsItWas();

private:
    using Hook = CallbackHook<const QString &>;

    Hook::Callback noteAs(const QString &name)
    {
        return [this, name](const QString &what) { m_calls.append(name + what); };
    }

    Hook::Callback m_callback;
    QStringList m_calls;
};

void CallbackHookTest::init()
{
    m_callback = nullptr;
    m_calls.clear();
}

void CallbackHookTest::theFormerListenerIsCalledToo()
{
    m_callback = noteAs(u"former "_s);
    const Hook hook(m_callback, noteAs(u"hook "_s));
    m_callback(u"1"_s);
    QCOMPARE(m_calls, QStringList({u"former 1"_s, u"hook 1"_s}));
}

void CallbackHookTest::aHookThatEndedIsNotCalled()
{
    m_callback = noteAs(u"former "_s);
    std::optional<Hook> hook(std::in_place, m_callback, noteAs(u"hook "_s));
    hook.reset();
    m_callback(u"1"_s);
    QCOMPARE(m_calls, QStringList{u"former 1"_s});
}

void CallbackHookTest::hooksEndInAnyOrder_data()
{
    QTest::addColumn<bool>("isFirstFirst");
    QTest::newRow("the first one first") << true;
    QTest::newRow("the last one first") << false;
}

void CallbackHookTest::hooksEndInAnyOrder()
{
    QFETCH(const bool, isFirstFirst);
    std::optional<Hook> first(std::in_place, m_callback, noteAs(u"first "_s));
    std::optional<Hook> last(std::in_place, m_callback, noteAs(u"last "_s));
    m_callback(u"1"_s);
    (isFirstFirst ? first : last).reset();
    m_callback(u"2"_s);
    (isFirstFirst ? last : first).reset();
    QVERIFY(!m_callback);
    QCOMPARE(m_calls, QStringList({u"first 1"_s, u"last 1"_s,
                                   isFirstFirst ? u"last 2"_s : u"first 2"_s}));
}

void CallbackHookTest::aHookMayEndInTheCall()
{
    std::optional<Hook> last;
    const Hook first(m_callback, [&](const QString &) { last.reset(); });
    last.emplace(m_callback, noteAs(u"last "_s));
    m_callback(u"1"_s);
    QVERIFY(m_calls.isEmpty());
}

void CallbackHookTest::aHookMayBeMadeInTheCall()
{
    std::optional<Hook> made;
    const Hook first(m_callback, [&](const QString &) {
        if (!made)
            made.emplace(m_callback, noteAs(u"made "_s));
    });
    m_callback(u"1"_s);
    QVERIFY(m_calls.isEmpty());
    m_callback(u"2"_s);
    QCOMPARE(m_calls, QStringList{u"made 2"_s});
}

void CallbackHookTest::theLastOneLeavesTheCallbackAsItWas()
{
    std::optional<Hook> hook(std::in_place, m_callback, noteAs(u"hook "_s));
    QVERIFY(m_callback);
    hook.reset();
    QVERIFY(!m_callback);
}

QTEST_MAIN(CallbackHookTest)
#include "CallbackHookTest.moc"
