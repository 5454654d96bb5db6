#include "capture/ClipboardItemFactory.h"

#include "capture/RichText.h"
#include "foundation/FilePath.h"
#include "foundation/Log.h"
#include "foundation/TextTools.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kPrintedCharacters = 50;

// What the main thread has time for: styled text has to be read, and of text a copy may have to be
// made.
constexpr qsizetype kMostStyledBytes = 32 * 1024;
constexpr qsizetype kMostTextBytes = 1024 * 1024;

QString printedBeginning(const Utf8Text &text)
{
    return firstCharacters(QString::fromUtf8(text.start()), kPrintedCharacters);
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
    const bool isOffered =
        snapshot.hasType(PasteboardType::kTiff) || snapshot.hasType(PasteboardType::kPng) ||
        snapshot.hasType(PasteboardType::kJpeg) || snapshot.hasType(PasteboardType::kImage);
    if (!isOffered || !snapshot.image || snapshot.image->size.isEmpty())
        return std::nullopt;
    return snapshot.image;
}

bool isWebAddress(const Utf8Text &text)
{
    return text.start().startsWith("http://") || text.start().startsWith("https://");
}

ClipboardItem createItem(ClipboardContentType type, const ClipboardCopy &copy)
{
    ClipboardItem item = makeItem(type, copy.time);
    item.sourceAppBundleID = copy.sourceBundleIdentifier;
    item.isRemoteClipboard = copy.isRemote;
    return item;
}

ClipboardItem createFileItem(const ClipboardCopy &copy)
{
    ClipboardItem item = createItem(ClipboardContentType::File, copy);
    QStringList names;
    for (const QString &path : copy.filePaths) {
        names.append(FilePath::readable(lastPathComponent(path)));
        item.fileTypes.append(pathExtension(path));
    }
    item.stringValue = Utf8Text(names.join(u", "_s));
    item.filePath = copy.filePaths.first();
    item.fileBookmarkData = copy.fileBookmark;
    return item;
}

std::optional<ClipboardItem> createTextItem(const Utf8Text &text, const ClipboardCopy &copy)
{
    Utf8Text trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return std::nullopt;
    const auto type =
        isWebAddress(trimmed) ? ClipboardContentType::Url : ClipboardContentType::Text;
    ClipboardItem item = createItem(type, copy);
    item.stringValue = std::move(trimmed);
    item.htmlRepresentation = copy.snapshot.html;
    item.rtfRepresentation = copy.snapshot.rtf;
    // Otherwise everybody who reads the list waits until the history has computed it.
    if (takesLongToMake(copy))
        item.contentHash = computeContentHash(item);
    return item;
}

ClipboardItem createImageItem(const PasteboardImage &image, const ClipboardCopy &copy)
{
    ClipboardItem item = createItem(ClipboardContentType::Image, copy);
    item.imageRepresentation = image.tiff;
    if (!image.digest.isEmpty())
        item.imageDigest = image.digest;
    return item;
}

} // namespace

std::optional<ClipboardItem> makeClipboardItem(const ClipboardCopy &copy)
{
    const PasteboardSnapshot &snapshot = copy.snapshot;
    const QString remote = copy.remoteSuffix();
    if (!copy.filePaths.isEmpty())
        return createFileItem(copy);
    // A blank text ends the search as well, even if there is a picture beside it.
    if (snapshot.string) {
        printLine(u"Detected: Text/URL - '"_s + printedBeginning(*snapshot.string) + u"...'"_s +
                  remote);
        return createTextItem(*snapshot.string, copy);
    }
    if (const auto text = richTextPlainString(snapshot.html, snapshot.rtf)) {
        printLine(u"Detected: Rich Text"_s + remote);
        return createTextItem(*text, copy);
    }
    if (const auto image = readableImage(snapshot)) {
        printLine(u"Detected: Image"_s + remote);
        return createImageItem(*image, copy);
    }
    printLine(u"Detected: Unknown type, ignoring"_s + remote);
    return std::nullopt;
}

bool takesLongToMake(const ClipboardCopy &copy)
{
    const PasteboardSnapshot &snapshot = copy.snapshot;
    if (!copy.filePaths.isEmpty())
        return false;
    if (snapshot.string)
        return snapshot.string->byteCount() > kMostTextBytes;
    const auto sizeOf = [](const auto &bytes) { return bytes ? bytes->size() : 0; };
    return sizeOf(snapshot.html) + sizeOf(snapshot.rtf) > kMostStyledBytes;
}
