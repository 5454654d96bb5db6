#include "platform/linux/PortalAppearance.h"

#include "platform/linux/SessionBus.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

const auto kPortalService = u"org.freedesktop.portal.Desktop"_s;
const auto kPortalPath = u"/org/freedesktop/portal/desktop"_s;
const auto kSettingsInterface = u"org.freedesktop.portal.Settings"_s;
const auto kAppearanceGroup = u"org.freedesktop.appearance"_s;
const auto kColorSchemeKey = u"color-scheme"_s;

constexpr uint kPrefersDark = 1;
constexpr uint kPrefersLight = 2;

/// Read() wraps the value twice, the signal once.
QVariant unwrapped(QVariant value)
{
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
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

    // Without the service's name: with it the connection would first wait to learn its owner.
    bus->connect({}, kPortalPath, kSettingsInterface, u"SettingChanged"_s, this,
                 SLOT(handleSettingChanged(QString, QString, QDBusVariant)));

    QDBusMessage question =
        QDBusMessage::createMethodCall(kPortalService, kPortalPath, kSettingsInterface, u"Read"_s);
    question << kAppearanceGroup << kColorSchemeKey;
    auto *watcher = new QDBusPendingCallWatcher(bus->asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this](QDBusPendingCallWatcher *finished) {
                const QDBusPendingReply<QDBusVariant> reply = *finished;
                // Without a portal there is no preference; that is normal.
                if (!reply.isError())
                    apply(QVariant::fromValue(reply.value()));
                finished->deleteLater();
            });
}

void PortalAppearance::handleSettingChanged(const QString &group, const QString &key,
                                            const QDBusVariant &value)
{
    if (group == kAppearanceGroup && key == kColorSchemeKey)
        apply(value.variant());
}

void PortalAppearance::apply(const QVariant &value)
{
    std::optional<bool> prefersDark;
    const uint scheme = unwrapped(value).toUInt();
    if (scheme == kPrefersDark)
        prefersDark = true;
    else if (scheme == kPrefersLight)
        prefersDark = false;

    if (prefersDark == m_prefersDark)
        return;
    m_prefersDark = prefersDark;
    if (onChanged)
        onChanged();
}
