#include "platform/linux/FileManagerViewer.h"

#include "platform/linux/SessionBus.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QProcess>
#include <QSet>

using namespace Qt::StringLiterals;

namespace {

const auto kService = u"org.freedesktop.FileManager1"_s;
const auto kPath = u"/org/freedesktop/FileManager1"_s;

void openFolders(const QList<QUrl> &urls)
{
    QSet<QUrl> folders;
    for (const QUrl &url : urls)
        folders.insert(url.adjusted(QUrl::RemoveFilename));
    for (const QUrl &folder : folders)
        QProcess::startDetached(u"xdg-open"_s, {folder.toString(QUrl::FullyEncoded)});
}

} // namespace

void FileManagerViewer::activateFileViewerSelecting(const QList<QUrl> &urls)
{
    const std::optional<QDBusConnection> bus = findSessionBus();
    if (!bus) {
        openFolders(urls);
        return;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(kService, kPath, kService, u"ShowItems"_s);
    QStringList items;
    for (const QUrl &url : urls)
        items.append(url.toString(QUrl::FullyEncoded));
    call << items << QString();
    auto *watcher = new QDBusPendingCallWatcher(bus->asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [urls](QDBusPendingCallWatcher *finished) {
                finished->deleteLater();
                if (finished->isError())
                    openFolders(urls);
            });
}
