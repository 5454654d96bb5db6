#include "platform/linux/FileManagerViewer.h"

#include "platform/Scheduler.h"
#include "platform/Workspace.h"
#include "platform/linux/SessionBus.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDir>
#include <QPointer>
#include <QProcess>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const auto kService = u"org.freedesktop.FileManager1"_s;
const auto kPath = u"/org/freedesktop/FileManager1"_s;

/// A file manager that has to be started first may take some seconds, and after some seconds the
/// person would try again.
constexpr auto kPatience = 5s;

QString encoded(const QUrl &url)
{
    return QString::fromLatin1(url.toEncoded());
}

/// Each once, in the order of the files.
QList<QUrl> foldersOf(const QList<QUrl> &urls)
{
    QList<QUrl> folders;
    for (const QUrl &url : urls) {
        // With a slash at its end the URL of a folder has no file name to take away.
        const QUrl folder = url.adjusted(QUrl::StripTrailingSlash).adjusted(QUrl::RemoveFilename);
        if (!folders.contains(folder))
            folders.append(folder);
    }
    return folders;
}

} // namespace

FileManagerViewer::FileManagerViewer(const Workspace &workspace, Scheduler &scheduler)
    : m_workspace(workspace)
    , m_scheduler(scheduler)
{
}

void FileManagerViewer::activateFileViewerSelecting(const QList<QUrl> &urls)
{
    if (urls.isEmpty())
        return;
    const std::optional<QDBusConnection> bus = findSessionBus();
    if (!bus)
        return openFolders(urls);
    QStringList items;
    for (const QUrl &url : urls)
        items.append(encoded(url));
    QDBusMessage message
        = QDBusMessage::createMethodCall(kService, kPath, kService, u"ShowItems"_s);
    message << items << m_workspace.newActivationToken();
    auto *call = new QDBusPendingCallWatcher(bus->asyncCall(message), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, urls, call] {
        call->deleteLater();
        if (call->isError())
            openFolders(urls);
    });
    m_scheduler.runAfter(kPatience, [this, urls, call = QPointer(call)] {
        if (!call || call->isFinished())
            return;
        delete call; // An answer that comes yet changes nothing.
        openFolders(urls);
    });
}

void FileManagerViewer::openFolders(const QList<QUrl> &urls) const
{
    for (const QUrl &folder : foldersOf(urls))
        openFolder(folder);
}

void FileManagerViewer::openFolder(const QUrl &folder) const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    if (const QString token = m_workspace.newActivationToken(); !token.isEmpty())
        environment.insert(u"DESKTOP_STARTUP_ID"_s, token);
    QProcess process;
    process.setProgram(u"xdg-open"_s);
    process.setArguments({encoded(folder)});
    process.setProcessEnvironment(environment);
    // What it starts may live longer than we do. It must hold neither the volume of our working
    // directory nor whoever reads our output.
    process.setWorkingDirectory(QDir::homePath());
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.startDetached();
}
