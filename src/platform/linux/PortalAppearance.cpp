#include "platform/linux/PortalAppearance.h"

#include "platform/linux/SessionBus.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QTimer>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

const auto kPortalService = u"org.freedesktop.portal.Desktop"_s;
const auto kPortalPath = u"/org/freedesktop/portal/desktop"_s;
const auto kSettingsInterface = u"org.freedesktop.portal.Settings"_s;
const auto kAppearanceGroup = u"org.freedesktop.appearance"_s;
const auto kInterfaceGroup = u"org.gnome.desktop.interface"_s;
const auto kAccessibilityGroup = u"org.gnome.desktop.a11y.interface"_s;
const auto kAllSettings = u"a{sa{sv}}"_s;

using SettingGroups = QMap<QString, QVariantMap>;
using Preferences = PortalAppearance::Preferences;

/// The value of a setting if it has the type that it should have. A portal may wrap it once more.
template <typename T>
std::optional<T> valueOf(QVariant value)
{
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    if (value.metaType() != QMetaType::fromType<T>())
        return std::nullopt;
    return value.value<T>();
}

/// 0 stands for no preference, and so do numbers that nobody has thought of yet.
std::optional<bool> darkness(const QVariant &value)
{
    constexpr uint kDark = 1;
    constexpr uint kLight = 2;
    const auto scheme = valueOf<uint>(value);
    if (scheme == kDark)
        return true;
    return scheme == kLight ? std::optional(false) : std::nullopt;
}

bool isOne(const QVariant &value)
{
    return valueOf<uint>(value) == 1U;
}

/// Parts out of range are how a portal says that no colour was chosen.
std::optional<QColor> color(const QVariant &value)
{
    const auto argument = valueOf<QDBusArgument>(value);
    if (!argument || argument->currentSignature() != "(ddd)"_L1)
        return std::nullopt;
    std::array<double, 3> parts{};
    argument->beginStructure();
    for (double &part : parts)
        *argument >> part;
    argument->endStructure();
    if (!std::ranges::all_of(parts, [](double part) { return part >= 0 && part <= 1; }))
        return std::nullopt;
    return QColor::fromRgbF(float(parts[0]), float(parts[1]), float(parts[2]));
}

double scale(const QVariant &value)
{
    const double factor = valueOf<double>(value).value_or(1);
    return std::isfinite(factor) && factor > 0 ? factor : 1;
}

void apply(Preferences &preferences, const QString &group, const QString &key,
           const QVariant &value)
{
    const auto isAbout = [&](const QString &aGroup, QLatin1StringView aKey) {
        return group == aGroup && key == aKey;
    };
    if (isAbout(kAppearanceGroup, "color-scheme"_L1))
        preferences.isDark = darkness(value);
    else if (isAbout(kAppearanceGroup, "accent-color"_L1))
        preferences.accent = color(value);
    else if (isAbout(kAppearanceGroup, "contrast"_L1))
        preferences.isContrastHigh = isOne(value);
    else if (isAbout(kAppearanceGroup, "reduced-motion"_L1))
        preferences.isMotionReduced = isOne(value);
    else if (isAbout(kInterfaceGroup, "enable-animations"_L1))
        preferences.isAnimated = valueOf<bool>(value).value_or(true);
    else if (isAbout(kInterfaceGroup, "text-scaling-factor"_L1))
        preferences.textScale = scale(value);
    else if (isAbout(kAccessibilityGroup, "high-contrast"_L1))
        preferences.isThemeContrastHigh = valueOf<bool>(value).value_or(false);
}

/// Absent if \a answer is none: without a portal there are no preferences, and that is normal.
std::optional<Preferences> preferencesIn(const QDBusMessage &answer)
{
    if (answer.type() != QDBusMessage::ReplyMessage || answer.signature() != kAllSettings)
        return std::nullopt;
    Preferences preferences;
    const auto groups = qdbus_cast<SettingGroups>(answer.arguments().first());
    for (const auto &[group, settings] : groups.asKeyValueRange()) {
        for (const auto &[key, value] : settings.asKeyValueRange())
            apply(preferences, group, key, value);
    }
    return preferences;
}

} // namespace

PortalAppearance::PortalAppearance()
{
    QTimer::singleShot(0, this, &PortalAppearance::ask);
}

void PortalAppearance::ask()
{
    std::optional<QDBusConnection> bus = findSessionBus();
    if (!bus)
        return;

    // Slots are found by the names of their types, and this one may not be known by its name yet.
    qRegisterMetaType<QDBusVariant>();
    // Without the service's name: with it the connection would first wait to learn its owner.
    bus->connect({}, kPortalPath, kSettingsInterface, u"SettingChanged"_s, this,
                 SLOT(handleSettingChanged(QString, QString, QDBusVariant)));

    QDBusMessage question = QDBusMessage::createMethodCall(kPortalService, kPortalPath,
                                                           kSettingsInterface, u"ReadAll"_s);
    question << QStringList{kAppearanceGroup, kInterfaceGroup, kAccessibilityGroup};
    auto *watcher = new QDBusPendingCallWatcher(bus->asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this](QDBusPendingCallWatcher *finished) {
                if (const auto preferences = preferencesIn(finished->reply()))
                    set(*preferences);
                finished->deleteLater();
            });
}

void PortalAppearance::handleSettingChanged(const QString &group, const QString &key,
                                            const QDBusVariant &value)
{
    Preferences changed = m_preferences;
    apply(changed, group, key, value.variant());
    set(changed);
}

void PortalAppearance::set(const Preferences &preferences)
{
    if (std::exchange(m_preferences, preferences) != preferences && onChanged)
        onChanged();
}
