#include "platform/linux/DBusNotifications.h"

#include "platform/linux/SessionBus.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QVariantMap>

using namespace Qt::StringLiterals;

namespace {

const auto kService = u"org.freedesktop.Notifications"_s;
const auto kPath = u"/org/freedesktop/Notifications"_s;
const auto kApplicationName = u"Tessarine"_s;
const auto kDesktopEntry = u"tessarine"_s;

constexpr uint kReplacesNone = 0;
constexpr int kAsLongAsTheDesktopLikes = -1;

/// The body may contain a few marks as in HTML. A ">" alone is none, and services that know no
/// marks would show its escaped form.
QString withoutMarks(QString text)
{
    return text.replace(u'&', "&amp;"_L1).replace(u'<', "&lt;"_L1);
}

} // namespace

void DBusNotifications::show(const QString &title, const QString &text,
                             std::function<void()> onShown)
{
    const std::optional<QDBusConnection> bus = findSessionBus();
    if (!bus)
        return;
    QDBusMessage call = QDBusMessage::createMethodCall(kService, kPath, kService, u"Notify"_s);
    call << kApplicationName << kReplacesNone << kDesktopEntry << title << withoutMarks(text)
         << QStringList() << QVariantMap{{u"desktop-entry"_s, kDesktopEntry}}
         << kAsLongAsTheDesktopLikes;
    auto *watcher = new QDBusPendingCallWatcher(bus->asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [onShown = std::move(onShown)](QDBusPendingCallWatcher *finished) {
                finished->deleteLater();
                // Without such a service nothing is shown; that is normal.
                if (!finished->isError() && onShown)
                    onShown();
            });
}
