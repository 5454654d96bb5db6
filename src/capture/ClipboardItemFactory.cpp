#include "capture/ClipboardItemFactory.h"

#include "capture/PrivacySettingsManager.h"
#include "capture/RichText.h"
#include "core/FileReferences.h"
#include "foundation/FilePath.h"
#include "foundation/Log.h"
#include "foundation/TextTools.h"
#include "platform/Clock.h"
#include "platform/Workspace.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kPrintedCharacters = 50;

QString printedBeginning(const Utf8Text &text)
{
    return firstCharacters(QString::fromUtf8(text.start()), kPrintedCharacters);
}

QString remoteSuffix(bool isRemote)
{
    return isRemote ? u" remote=true"_s : u" remote=false"_s;
}

/// The path without the slashes with which the names of directories may end.
QString pathOf(const QUrl &url)
{
    QString path = FilePath::of(url);
    while (path.size() > 1 && path.endsWith(u'/'))
        path.chop(1);
    return path;
}

QString lastPathComponent(const QString &path)
{
    return path == "/"_L1 ? path : path.sliced(path.lastIndexOf(u'/') + 1);
}

/// What follows the last dot of the name. A dot at the beginning only hides the file.
QString pathExtension(const QString &path)
{
    const QString name = lastPathComponent(path);
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot > 0 ? name.sliced(dot + 1) : QString();
}

std::optional<PasteboardImage> readableImage(const PasteboardSnapshot &snapshot)
{
    const bool isOffered = snapshot.hasType(PasteboardType::kTiff)
        || snapshot.hasType(PasteboardType::kPng) || snapshot.hasType(PasteboardType::kJpeg)
        || snapshot.hasType(PasteboardType::kImage);
    if (!isOffered || !snapshot.image || snapshot.image->size.isEmpty())
        return std::nullopt;
    return snapshot.image;
}

bool isWebAddress(const Utf8Text &text)
{
    return text.start().startsWith("http://") || text.start().startsWith("https://");
}

} // namespace

ClipboardItemFactory::ClipboardItemFactory(const Workspace &workspace, const Clock &clock,
                                           const PrivacySettingsManager &privacySettings,
                                           const FileReferences &fileReferences)
    : m_workspace(workspace)
    , m_clock(clock)
    , m_privacySettings(privacySettings)
    , m_fileReferences(fileReferences)
{
}

std::optional<ClipboardItem>
ClipboardItemFactory::makeClipboardItem(const PasteboardSnapshot &snapshot) const
{
    const Source source = findSource(snapshot);
    if (source.isIgnored)
        return std::nullopt;
    const QString remote = remoteSuffix(source.isRemote);

    if (hasExistingFiles(snapshot)) {
        printLine(u"Detected: File(s) - %1 items"_s.arg(snapshot.fileUrls->size()) + remote);
        return createFileItem(*snapshot.fileUrls, source);
    }
    // A blank text ends the search as well, even if there is a picture beside it.
    if (snapshot.string) {
        printLine(u"Detected: Text/URL - '"_s + printedBeginning(*snapshot.string) + u"...'"_s
                  + remote);
        return createTextItem(*snapshot.string, snapshot, source);
    }
    if (const auto text = richTextPlainString(snapshot.html, snapshot.rtf)) {
        printLine(u"Detected: Rich Text"_s + remote);
        return createTextItem(*text, snapshot, source);
    }
    if (const auto image = readableImage(snapshot)) {
        printLine(u"Detected: Image"_s + remote);
        return createImageItem(*image, source);
    }
    printLine(u"Detected: Unknown type, ignoring"_s + remote);
    return std::nullopt;
}

ClipboardItemFactory::Source
ClipboardItemFactory::findSource(const PasteboardSnapshot &snapshot) const
{
    Source source;
    source.isRemote = snapshot.hasType(PasteboardType::kRemoteClipboard);
    if (source.isRemote)
        return source;
    const auto application = m_workspace.frontmostApplication();
    if (!application || application->bundleIdentifier.isEmpty())
        return source;
    const QString &identifier = application->bundleIdentifier;
    source.bundleIdentifier = identifier;
    source.isIgnored
        = m_privacySettings.ignoredBundleIdentifiers().contains(identifier.toLower());
    if (source.isIgnored) {
        const QString &name = application->localizedName;
        printLine(u"Ignored clipboard change from app: "_s + (name.isEmpty() ? u"Unknown"_s : name)
                  + u" ("_s + identifier + u')');
    }
    return source;
}

ClipboardItem ClipboardItemFactory::createItem(ClipboardContentType type,
                                               const Source &source) const
{
    ClipboardItem item = makeItem(type, m_clock.now());
    item.sourceAppBundleID = source.bundleIdentifier;
    item.isRemoteClipboard = source.isRemote;
    return item;
}

std::optional<ClipboardItem>
ClipboardItemFactory::createTextItem(const Utf8Text &text, const PasteboardSnapshot &snapshot,
                                     const Source &source) const
{
    Utf8Text trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return std::nullopt;
    const auto type
        = isWebAddress(trimmed) ? ClipboardContentType::Url : ClipboardContentType::Text;
    ClipboardItem item = createItem(type, source);
    item.stringValue = std::move(trimmed);
    item.htmlRepresentation = snapshot.html;
    item.rtfRepresentation = snapshot.rtf;
    return item;
}

ClipboardItem ClipboardItemFactory::createImageItem(const PasteboardImage &image,
                                                    const Source &source) const
{
    ClipboardItem item = createItem(ClipboardContentType::Image, source);
    item.imageRepresentation = image.tiff;
    if (!image.digest.isEmpty())
        item.imageDigest = image.digest;
    return item;
}

bool ClipboardItemFactory::hasExistingFiles(const PasteboardSnapshot &snapshot) const
{
    return snapshot.hasType(PasteboardType::kFileUrl) && snapshot.fileUrls
        && !snapshot.fileUrls->isEmpty() && m_fileReferences.mayExist(*snapshot.fileUrls);
}

ClipboardItem ClipboardItemFactory::createFileItem(const QList<QUrl> &urls,
                                                   const Source &source) const
{
    ClipboardItem item = createItem(ClipboardContentType::File, source);
    QStringList names;
    for (const QUrl &url : urls) {
        const QString path = pathOf(url);
        names.append(FilePath::readable(lastPathComponent(path)));
        item.fileTypes.append(pathExtension(path));
    }
    item.stringValue = Utf8Text(names.join(u", "_s));
    item.filePath = pathOf(urls.first());
    item.fileBookmarkData = m_fileReferences.createBookmark(FilePath::toUrl(*item.filePath));
    return item;
}
