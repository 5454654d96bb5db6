#include "platform/linux/PortalAppearance.h"

#include "tests/platform/PrivateDesktop.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QTest>

using namespace Qt::StringLiterals;

/// A portal that answers what a test says, on a connection of its own.
class FakePortal : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    explicit FakePortal(const QString &busAddress)
        : m_bus(QDBusConnection::connectToBus(busAddress, u"portal"_s))
    {
        m_bus.registerObject(u"/org/freedesktop/portal/desktop"_s, this,
                             QDBusConnection::ExportAllSlots);
        m_bus.registerService(u"org.freedesktop.portal.Desktop"_s);
    }

    ~FakePortal() override { QDBusConnection::disconnectFromBus(u"portal"_s); }

    void announce(const QString &group, const QString &key, const QVariant &value)
    {
        QDBusMessage signal =
            QDBusMessage::createSignal(u"/org/freedesktop/portal/desktop"_s,
                                       u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s);
        signal << group << key << QVariant::fromValue(QDBusVariant(value));
        m_bus.send(signal);
    }

    std::optional<uint> colorScheme; ///< Without one the portal knows no such setting.
    int questionCount = 0;

public slots:
    QDBusVariant Read(const QString &group, const QString &key) // The name is the bus's.
    {
        ++questionCount;
        if (!colorScheme || group != "org.freedesktop.appearance"_L1 || key != "color-scheme"_L1) {
            sendErrorReply(u"org.freedesktop.portal.Error.NotFound"_s, u"Unknown setting"_s);
            return {};
        }
        // A variant within a variant.
        return QDBusVariant(QVariant::fromValue(QDBusVariant(*colorScheme)));
    }

private:
    QDBusConnection m_bus;
};

class PortalAppearanceTest : public QObject
{
    Q_OBJECT

public:
    explicit PortalAppearanceTest(QString busAddress)
        : m_busAddress(std::move(busAddress))
    {
    }

private slots:
    void preferenceIsReadOnceTheLoopRuns_data();
    void preferenceIsReadOnceTheLoopRuns();
    void changesAreFollowed();
    void otherSettingsAreNotTaken();
    void portalWithoutTheSettingGivesNoPreference();

private:
    QString m_busAddress;
};

void PortalAppearanceTest::preferenceIsReadOnceTheLoopRuns_data()
{
    QTest::addColumn<uint>("colorScheme");
    QTest::addColumn<bool>("isDark");

    QTest::newRow("dark") << 1u << true;
    QTest::newRow("light") << 2u << false;
}

void PortalAppearanceTest::preferenceIsReadOnceTheLoopRuns()
{
    QFETCH(uint, colorScheme);
    QFETCH(bool, isDark);
    FakePortal portal(m_busAddress);
    portal.colorScheme = colorScheme;

    PortalAppearance appearance;
    int changeCount = 0;
    appearance.onChanged = [&changeCount] { ++changeCount; };
    QVERIFY(!appearance.prefersDark());
    QTRY_COMPARE(appearance.prefersDark(), std::optional(isDark));
    QCOMPARE(changeCount, 1);
}

void PortalAppearanceTest::changesAreFollowed()
{
    FakePortal portal(m_busAddress);
    portal.colorScheme = 2;
    PortalAppearance appearance;
    QList<std::optional<bool>> changes;
    appearance.onChanged = [&] { changes.append(appearance.prefersDark()); };
    QTRY_COMPARE(changes.size(), 1);

    for (const uint scheme : {1u, 1u, 0u, 2u})
        portal.announce(u"org.freedesktop.appearance"_s, u"color-scheme"_s, scheme);
    QTRY_COMPARE(changes.size(), 4);
    const QList<std::optional<bool>> expected{false, true, std::nullopt, false};
    QVERIFY(changes == expected);
}

void PortalAppearanceTest::otherSettingsAreNotTaken()
{
    FakePortal portal(m_busAddress);
    portal.colorScheme = 2;
    PortalAppearance appearance;
    QList<std::optional<bool>> changes;
    appearance.onChanged = [&] { changes.append(appearance.prefersDark()); };
    QTRY_COMPARE(changes.size(), 1);

    portal.announce(u"org.freedesktop.appearance"_s, u"contrast"_s, 1u);
    portal.announce(u"org.gnome.desktop.interface"_s, u"color-scheme"_s, 1u);
    portal.announce(u"org.freedesktop.appearance"_s, u"color-scheme"_s, 0u);
    QTRY_COMPARE(changes.size(), 2);
    QVERIFY(!appearance.prefersDark());
}

void PortalAppearanceTest::portalWithoutTheSettingGivesNoPreference()
{
    FakePortal portal(m_busAddress);
    PortalAppearance appearance;
    QTRY_COMPARE(portal.questionCount, 1);
    // The answer has been there before this signal.
    bool isChanged = false;
    appearance.onChanged = [&isChanged] { isChanged = true; };
    portal.announce(u"org.freedesktop.appearance"_s, u"color-scheme"_s, 1u);
    QTRY_VERIFY(isChanged);
    QCOMPARE(appearance.prefersDark(), std::optional(true));
}

int main(int argc, char *argv[])
{
    PrivateDesktop desktop;
    const QString address = desktop.startBus();
    qputenv("DBUS_SESSION_BUS_ADDRESS", address.toUtf8());
    QCoreApplication application(argc, argv);
    PortalAppearanceTest test(address);
    return address.isEmpty() ? EXIT_FAILURE : QTest::qExec(&test, argc, argv);
}

#include "PortalAppearanceTest.moc"
