#include "platform/linux/PortalAppearance.h"

#include "tests/platform/PrivateDesktop.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QTest>

#include <functional>
#include <limits>

using namespace Qt::StringLiterals;
using Preferences = PortalAppearance::Preferences;
using SettingGroups = QMap<QString, QVariantMap>;

namespace {

const QString kAppearance = u"org.freedesktop.appearance"_s;
const QString kInterface = u"org.gnome.desktop.interface"_s;
const QString kAccessibility = u"org.gnome.desktop.a11y.interface"_s;

/// The three numbers of a colour as they go over the bus.
struct Numbers
{
    double red = 0;
    double green = 0;
    double blue = 0;
};

QDBusArgument &operator<<(QDBusArgument &argument, const Numbers &numbers)
{
    argument.beginStructure();
    argument << numbers.red << numbers.green << numbers.blue;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, Numbers &numbers)
{
    argument.beginStructure();
    argument >> numbers.red >> numbers.green >> numbers.blue;
    argument.endStructure();
    return argument;
}

QVariant colorSetting(double red, double green, double blue)
{
    return QVariant::fromValue(Numbers{red, green, blue});
}

Preferences with(const std::function<void(Preferences &)> &change)
{
    Preferences preferences;
    change(preferences);
    return preferences;
}

} // namespace

Q_DECLARE_METATYPE(Numbers)

/// A portal on a connection of its own, which answers by the slots of its heirs.
class Portal : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    explicit Portal(const QString &busAddress)
        : m_bus(QDBusConnection::connectToBus(busAddress, u"portal"_s))
    {
        m_bus.registerObject(u"/org/freedesktop/portal/desktop"_s, this,
                             QDBusConnection::ExportAllSlots);
        m_bus.registerService(u"org.freedesktop.portal.Desktop"_s);
    }

    ~Portal() override { QDBusConnection::disconnectFromBus(u"portal"_s); }

    void announce(const QString &group, const QString &key, const QVariant &value)
    {
        QDBusMessage signal =
            QDBusMessage::createSignal(u"/org/freedesktop/portal/desktop"_s,
                                       u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s);
        signal << group << key << QVariant::fromValue(QDBusVariant(value));
        m_bus.send(signal);
    }

private:
    QDBusConnection m_bus;
};

/// Answers what a test says.
class FakePortal : public Portal
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    using Portal::Portal;

    void set(const QString &group, const QString &key, const QVariant &value)
    {
        settings[group][key] = value;
    }

    /// By the name of their group; what is not here the portal does not know.
    QMap<QString, QVariantMap> settings;
    QStringList questions; ///< The groups that were asked for.

public slots:
    SettingGroups ReadAll(const QStringList &groups) // The name is the bus's.
    {
        questions += groups;
        return settings;
    }
};

/// Answers with something that is no settings.
class BabblingPortal : public Portal
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    using Portal::Portal;

    bool isAsked = false;

public slots:
    QStringList ReadAll(const QStringList &groups)
    {
        isAsked = true;
        return groups;
    }
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
    void settingsAreReadOnceTheLoopRuns_data();
    void settingsAreReadOnceTheLoopRuns();
    void changesAreFollowed_data() { settingsAreReadOnceTheLoopRuns_data(); }
    void changesAreFollowed();
    void eachChangeIsToldOnce();
    void nonsenseIsNoPreference_data();
    void nonsenseIsNoPreference();
    void otherSettingsAreNotTaken();
    void everythingIsAskedAtOnce();
    void aPortalThatAnswersNonsenseIsNone();

private:
    QString m_busAddress;
};

void PortalAppearanceTest::settingsAreReadOnceTheLoopRuns_data()
{
    QTest::addColumn<QString>("group");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<Preferences>("expected");

    const auto row = [](const char *name, const QString &group, const QString &key,
                        const QVariant &value, const std::function<void(Preferences &)> &change) {
        QTest::newRow(name) << group << key << value << with(change);
    };
    row("dark", kAppearance, u"color-scheme"_s, 1U, [](auto &p) { p.isDark = true; });
    row("light", kAppearance, u"color-scheme"_s, 2U, [](auto &p) { p.isDark = false; });
    row("accent", kAppearance, u"accent-color"_s, colorSetting(1, 0.5, 0),
        [](auto &p) { p.accent = QColor::fromRgbF(1, 0.5, 0); });
    row("black accent", kAppearance, u"accent-color"_s, colorSetting(0, 0, 0),
        [](auto &p) { p.accent = QColor(Qt::black); });
    row("contrast", kAppearance, u"contrast"_s, 1U, [](auto &p) { p.isContrastHigh = true; });
    row("motion", kAppearance, u"reduced-motion"_s, 1U, [](auto &p) { p.isMotionReduced = true; });
    row("animations", kInterface, u"enable-animations"_s, false,
        [](auto &p) { p.isAnimated = false; });
    row("text", kInterface, u"text-scaling-factor"_s, 1.25, [](auto &p) { p.textScale = 1.25; });
    row("theme", kAccessibility, u"high-contrast"_s, true,
        [](auto &p) { p.isThemeContrastHigh = true; });
}

void PortalAppearanceTest::settingsAreReadOnceTheLoopRuns()
{
    QFETCH(QString, group);
    QFETCH(QString, key);
    QFETCH(QVariant, value);
    QFETCH(Preferences, expected);
    FakePortal portal(m_busAddress);
    portal.set(group, key, value);

    PortalAppearance appearance;
    int changeCount = 0;
    appearance.onChanged = [&changeCount] { ++changeCount; };
    QVERIFY(appearance.preferences() == Preferences());
    QTRY_VERIFY(appearance.preferences() == expected);
    QCOMPARE(changeCount, 1);
}

void PortalAppearanceTest::changesAreFollowed()
{
    QFETCH(QString, group);
    QFETCH(QString, key);
    QFETCH(QVariant, value);
    QFETCH(Preferences, expected);
    FakePortal portal(m_busAddress);
    PortalAppearance appearance;
    QTRY_VERIFY(!portal.questions.isEmpty());

    portal.announce(group, key, value);
    QTRY_VERIFY(appearance.preferences() == expected);
    portal.announce(group, key, u"nothing that anybody could mean"_s);
    QTRY_VERIFY(appearance.preferences() == Preferences());
}

void PortalAppearanceTest::eachChangeIsToldOnce()
{
    FakePortal portal(m_busAddress);
    portal.set(kAppearance, u"color-scheme"_s, 2U);
    PortalAppearance appearance;
    QList<std::optional<bool>> changes;
    appearance.onChanged = [&] { changes.append(appearance.preferences().isDark); };
    QTRY_COMPARE(changes.size(), 1);

    for (const uint scheme : {1u, 1u, 0u, 2u})
        portal.announce(kAppearance, u"color-scheme"_s, scheme);
    QTRY_COMPARE(changes.size(), 4);
    const QList<std::optional<bool>> expected{false, true, std::nullopt, false};
    QVERIFY(changes == expected);
}

void PortalAppearanceTest::nonsenseIsNoPreference_data()
{
    QTest::addColumn<QString>("group");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("value");

    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    QTest::newRow("scheme of times to come") << kAppearance << u"color-scheme"_s << QVariant(3U);
    QTest::newRow("scheme as text") << kAppearance << u"color-scheme"_s << QVariant(u"1"_s);
    QTest::newRow("scheme as a signed number") << kAppearance << u"color-scheme"_s << QVariant(1);
    QTest::newRow("contrast as text") << kAppearance << u"contrast"_s << QVariant(u"1"_s);
    QTest::newRow("contrast as a switch") << kAppearance << u"contrast"_s << QVariant(true);
    QTest::newRow("no accent") << kAppearance << u"accent-color"_s << colorSetting(-1, -1, -1);
    QTest::newRow("accent out of range")
        << kAppearance << u"accent-color"_s << colorSetting(0.2, 1.1, 0.2);
    QTest::newRow("accent of no numbers")
        << kAppearance << u"accent-color"_s << colorSetting(nan, nan, nan);
    QTest::newRow("accent as a name") << kAppearance << u"accent-color"_s << QVariant(u"blue"_s);
    QTest::newRow("accent as a list")
        << kAppearance << u"accent-color"_s << QVariant(QStringList{u"0"_s, u"0"_s, u"0"_s});
    QTest::newRow("animations as text")
        << kInterface << u"enable-animations"_s << QVariant(u"false"_s);
    QTest::newRow("animations as a number") << kInterface << u"enable-animations"_s << QVariant(0U);
    QTest::newRow("no text") << kInterface << u"text-scaling-factor"_s << QVariant(0.0);
    QTest::newRow("text below nothing") << kInterface << u"text-scaling-factor"_s << QVariant(-2.0);
    QTest::newRow("endless text") << kInterface << u"text-scaling-factor"_s << QVariant(infinity);
    QTest::newRow("text without number") << kInterface << u"text-scaling-factor"_s << QVariant(nan);
    QTest::newRow("text in words") << kInterface << u"text-scaling-factor"_s << QVariant(u"1.5"_s);
}

void PortalAppearanceTest::nonsenseIsNoPreference()
{
    QFETCH(QString, group);
    QFETCH(QString, key);
    QFETCH(QVariant, value);
    FakePortal portal(m_busAddress);
    portal.set(group, key, value);
    portal.set(kAppearance, u"reduced-motion"_s, 1U); // By which the answer is known to be there.
    PortalAppearance appearance;
    const Preferences expected = with([](Preferences &p) { p.isMotionReduced = true; });
    QTRY_VERIFY(appearance.preferences() != Preferences());
    QVERIFY(appearance.preferences() == expected);

    portal.announce(group, key, value);
    portal.announce(kAppearance, u"reduced-motion"_s, 0U);
    QTRY_VERIFY(appearance.preferences() != expected);
    QVERIFY(appearance.preferences() == Preferences());
}

void PortalAppearanceTest::otherSettingsAreNotTaken()
{
    FakePortal portal(m_busAddress);
    portal.set(kAppearance, u"color-scheme"_s, 2U);
    PortalAppearance appearance;
    int changeCount = 0;
    appearance.onChanged = [&changeCount] { ++changeCount; };
    QTRY_COMPARE(changeCount, 1);

    portal.announce(kInterface, u"color-scheme"_s, 1U);
    portal.announce(kAppearance, u"enable-animations"_s, false);
    portal.announce(kAppearance, u"color-scheme"_s, 0U);
    QTRY_COMPARE(changeCount, 2);
    QVERIFY(appearance.preferences() == Preferences());
}

void PortalAppearanceTest::everythingIsAskedAtOnce()
{
    FakePortal portal(m_busAddress);
    PortalAppearance appearance;
    QTRY_COMPARE(portal.questions, (QStringList{kAppearance, kInterface, kAccessibility}));
}

void PortalAppearanceTest::aPortalThatAnswersNonsenseIsNone()
{
    BabblingPortal portal(m_busAddress);
    PortalAppearance appearance;
    QTRY_VERIFY(portal.isAsked);
    // The answer has been there before this signal.
    portal.announce(kAppearance, u"color-scheme"_s, 1U);
    QTRY_COMPARE(appearance.preferences().isDark, std::optional(true));
}

int main(int argc, char *argv[])
{
    PrivateDesktop desktop;
    const QString address = desktop.startBus();
    qputenv("DBUS_SESSION_BUS_ADDRESS", address.toUtf8());
    QCoreApplication application(argc, argv);
    qDBusRegisterMetaType<Numbers>();
    qDBusRegisterMetaType<SettingGroups>();
    PortalAppearanceTest test(address);
    return address.isEmpty() ? EXIT_FAILURE : QTest::qExec(&test, argc, argv);
}

#include "PortalAppearanceTest.moc"
