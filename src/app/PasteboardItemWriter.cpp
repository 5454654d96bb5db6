#include "app/PasteboardItemWriter.h"

#include "app/ScopedFileLease.h"
#include "core/ClipboardItemManager.h"
#include "core/PasteboardWriting.h"
#include "foundation/FilePath.h"
#include "foundation/TaggedLog.h"
#include "platform/ImageCodec.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

/// A format without a type of its own goes out as TIFF, its bytes unchanged.
QStringView typeForExtension(const QString &extension)
{
    if (extension == u"jpg" || extension == u"jpeg")
        return PasteboardType::kJpeg;
    if (extension == u"png")
        return PasteboardType::kPng;
    return PasteboardType::kTiff;
}

QString trueOrFalse(bool flag)
{
    return flag ? u"true"_s : u"false"_s;
}

} // namespace

PasteboardItemWriter::PasteboardItemWriter(Pasteboard &pasteboard,
                                           ClipboardItemManager &itemManager,
                                           ScopedFileLease &fileLease, const ImageCodec &codec,
                                           const UserDefaults &defaults)
    : m_pasteboard(pasteboard)
    , m_itemManager(itemManager)
    , m_fileLease(fileLease)
    , m_codec(codec)
    , m_defaults(defaults)
{
}

void PasteboardItemWriter::write(const ClipboardItem &item)
{
    m_pasteboard.write(contentsOf(item));
}

PasteboardContents PasteboardItemWriter::contentsOf(const ClipboardItem &item)
{
    PasteboardContents contents;
    switch (item.contentType) {
    case ClipboardContentType::Text:
    case ClipboardContentType::Url:
        if (!writeTextFamilyToPasteboard(item, contents))
            printLine(u"Failed to restore text data from history item"_s);
        break;
    case ClipboardContentType::Image:
        if (writeImageToPasteboard(item, contents))
            break;
        printLine(u"Failed to restore image data from history item"_s);
        logDragPaste(m_defaults,
                     [] { return u"pasteItem image failed to write to NSPasteboard"_s; });
        break;
    case ClipboardContentType::File: writeFile(item, contents); break;
    case ClipboardContentType::Mixed: break;
    }
    return contents;
}

bool PasteboardItemWriter::writeImageToPasteboard(const ClipboardItem &item,
                                                  PasteboardContents &pasteboard) const
{
    if (item.imageFileName && writeImageFile(*item.imageFileName, pasteboard))
        return true;
    if (item.imageRepresentation) {
        writeImageInMemory(*item.imageRepresentation, pasteboard);
        return true;
    }
    if (item.imageFileName && writeReloadedImage(*item.imageFileName, pasteboard))
        return true;
    logDragPaste(m_defaults, [&] {
        return u"writeImageToPasteboard exhausted all sources for id="_s + uuidString(item.id);
    });
    return false;
}

bool PasteboardItemWriter::writeImageFile(const QString &name,
                                          PasteboardContents &pasteboard) const
{
    // A large picture on a slow disk would hold up the window's way out; it is read where programs
    // ask for it, on the pasteboard's thread.
    const auto file = m_itemManager.openImageFile(name);
    if (!file) {
        logDragPaste(m_defaults,
                     [&] { return u"writeImageToPasteboard failed reading file name="_s + name; });
        return false;
    }
    const QString extension = QFileInfo(name).suffix().toLower();
    const QStringView type = typeForExtension(extension);
    logDragPaste(m_defaults, [&] {
        return u"writeImageToPasteboard from file name="_s + name + u" ext="_s + extension
               + u" bytes="_s + QString::number(file->size()) + u" type="_s + type.toString();
    });
    pasteboard.add(type, *file);
    return true;
}

void PasteboardItemWriter::writeImageInMemory(const QByteArray &representation,
                                              PasteboardContents &pasteboard) const
{
    auto image = m_codec.tiffFromPicture(representation);
    QByteArray bytes = image ? std::move(image->tiff) : representation;
    logDragPaste(m_defaults, [&] {
        const QString source = image ? u"from in-memory imageRepresentation -> tiff"_s
                                     : u"fallback raw imageRepresentation"_s;
        return u"writeImageToPasteboard "_s + source + u" bytes="_s
               + QString::number(bytes.size());
    });
    pasteboard.add(PasteboardType::kTiff, std::move(bytes));
}

/// A file that could not be read may be readable a moment later: it is on its way back from
/// somebody's edit, or on a disk that had to wake up.
bool PasteboardItemWriter::writeReloadedImage(const QString &name,
                                              PasteboardContents &pasteboard) const
{
    const auto file = m_itemManager.openImageFile(name);
    const auto bytes = file ? file->read() : std::nullopt;
    auto image = bytes ? m_codec.tiffFromPicture(*bytes) : std::nullopt;
    if (!image)
        return false;
    logDragPaste(m_defaults, [&] {
        return u"writeImageToPasteboard fallback loadImage() -> tiff bytes="_s
               + QString::number(image->tiff.size());
    });
    pasteboard.add(PasteboardType::kTiff, std::move(image->tiff));
    return true;
}

void PasteboardItemWriter::writeFile(const ClipboardItem &item, PasteboardContents &pasteboard)
{
    // The pasteboard takes every URL, so that no second way to write one is needed.
    if (const auto resolved = m_itemManager.resolveFileURL(item)) {
        m_itemManager.refreshStaleBookmark(item, resolved->url, resolved->isStale);
        m_fileLease.beginScopedFileURLAccess(resolved->url);
        pasteboard.add(PasteboardType::kFileUrl, resolved->url.toEncoded());
        logDragPaste(m_defaults, [&] {
            return u"pasteItem file writeObjects resolved url="_s + FilePath::of(resolved->url)
                   + u" stale="_s + trueOrFalse(resolved->isStale) + u" accessing="_s
                   + trueOrFalse(m_fileLease.isAccessing());
        });
        return;
    }
    if (!item.filePath)
        return;
    pasteboard.add(PasteboardType::kFileUrl, FilePath::toUrl(*item.filePath).toEncoded());
    logDragPaste(m_defaults, [&] {
        return u"pasteItem file writeObjects fallback path="_s + *item.filePath;
    });
}
