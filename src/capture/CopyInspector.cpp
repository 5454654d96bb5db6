#include "capture/CopyInspector.h"

#include "capture/PrivacySettingsManager.h"
#include "core/FileReferences.h"
#include "foundation/FilePath.h"
#include "foundation/Log.h"
#include "platform/Clock.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// The path without the slashes with which the names of directories may end.
QString pathOf(const QUrl &url)
{
    QString path = FilePath::of(url);
    while (path.size() > 1 && path.endsWith(u'/'))
        path.chop(1);
    return path;
}

/// The file system would read no further than that.
bool hasZero(const QUrl &url)
{
    return FilePath::of(url).contains(QChar::Null);
}

bool isRemote(const PasteboardSnapshot &snapshot)
{
    return snapshot.hasType(PasteboardType::kRemoteClipboard);
}

/// Absent as well for a program without identifier.
std::optional<QString> sourceOf(const PasteboardSnapshot &snapshot)
{
    const auto &application = snapshot.frontmostApplication;
    if (isRemote(snapshot) || !application || application->bundleIdentifier.isEmpty())
        return std::nullopt;
    return application->bundleIdentifier;
}

} // namespace

CopyInspector::CopyInspector(const Clock &clock, const PrivacySettingsManager &privacySettings,
                             const FileReferences &fileReferences)
    : m_clock(clock)
    , m_privacySettings(privacySettings)
    , m_fileReferences(fileReferences)
{
}

bool CopyInspector::isIgnored(const PasteboardSnapshot &snapshot) const
{
    const auto source = sourceOf(snapshot);
    return source && m_privacySettings.ignoredBundleIdentifiers().contains(source->toLower());
}

ClipboardCopy CopyInspector::inspect(const PasteboardSnapshot &snapshot) const
{
    ClipboardCopy copy;
    copy.snapshot = snapshot;
    copy.time = m_clock.now();
    copy.sourceBundleIdentifier = sourceOf(snapshot);
    copy.isRemote = isRemote(snapshot);
    if (hasExistingFiles(snapshot))
        addFiles(copy);
    return copy;
}

bool CopyInspector::hasExistingFiles(const PasteboardSnapshot &snapshot) const
{
    return snapshot.hasType(PasteboardType::kFileUrl) && snapshot.fileUrls &&
           !snapshot.fileUrls->isEmpty() &&
           std::none_of(snapshot.fileUrls->begin(), snapshot.fileUrls->end(), hasZero) &&
           m_fileReferences.mayExist(*snapshot.fileUrls);
}

void CopyInspector::addFiles(ClipboardCopy &copy) const
{
    for (const QUrl &url : *copy.snapshot.fileUrls)
        copy.filePaths.append(pathOf(url));
    printLine(u"Detected: File(s) - %1 items"_s.arg(copy.filePaths.size()) + copy.remoteSuffix());
    copy.fileBookmark = m_fileReferences.createBookmark(FilePath::toUrl(copy.filePaths.first()));
}
