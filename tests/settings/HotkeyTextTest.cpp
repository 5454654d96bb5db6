#include "settings/HotkeyText.h"

#include "foundation/UserDefaults.h"
#include "language/LanguageManager.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class HotkeyTextTest : public QObject
{
    Q_OBJECT

private slots:
    void aCombinationReadsAsOnAKeyboard_data()
    {
        QTest::addColumn<quint32>("keyCode");
        QTest::addColumn<quint32>("modifiers");
        QTest::addColumn<QStringList>("caps");
        QTest::newRow("the default") << 49u << 0x800u << QStringList{u"Alt"_s, u"Space"_s};
        QTest::newRow("all modifiers")
            << 0u << 0x1b00u << QStringList{u"Super"_s, u"Ctrl"_s, u"Alt"_s, u"Shift"_s, u"A"_s};
        QTest::newRow("none") << 36u << 0u << QStringList{u"Enter"_s};
        QTest::newRow("a code without name")
            << 10u << 0x100u << QStringList{u"Super"_s, u"Unknown"_s};
    }

    void aCombinationReadsAsOnAKeyboard()
    {
        QFETCH(QStringList, caps);
        QFETCH(quint32, keyCode);
        QFETCH(quint32, modifiers);
        QCOMPARE(HotkeyText::keyCaps({keyCode, modifiers}), caps);
        QCOMPARE(HotkeyText::readable({keyCode, modifiers}), caps.join(u'+'));
    }

    void theTablesNameTheKeysOfThisDesktop()
    {
        const QTemporaryDir directory;
        UserDefaults defaults(directory.filePath(u"test.conf"_s));
        LanguageManager languages(defaults);
        languages.install();
        for (const auto language : {AppLanguage::English, AppLanguage::Chinese}) {
            languages.setLanguage(language);
            QCOMPARE(HotkeyText::readable({9, 0x1900}), u"Super+Ctrl+Alt+V"_s);
        }
    }
};

QTEST_GUILESS_MAIN(HotkeyTextTest)
#include "HotkeyTextTest.moc"
