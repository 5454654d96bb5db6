#include "app/PastePipeline.h"

#include "capture/ClipboardMonitor.h"
#include "core/ClipboardItemManager.h"
#include "core/PasteboardWriting.h"
#include "foundation/FilePath.h"
#include "foundation/TaggedLog.h"
#include "platform/ImageCodec.h"
#include "platform/PasteKeystroke.h"
#include "platform/Scheduler.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kPasteRefocusDelay = 250ms;
constexpr auto kPasteKeystrokeDelay = 150ms;
constexpr auto kPasteFinishDelay = 200ms;
constexpr auto kInternalCopyPauseDuration = 600ms;

std::optional<QByteArray> readFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return file.readAll();
}

/// A format without a type of its own goes out as TIFF, its bytes unchanged.
QStringView typeForExtension(const QString &extension)
{
    if (extension == u"jpg" || extension == u"jpeg")
        return PasteboardType::kJpeg;
    if (extension == u"png")
        return PasteboardType::kPng;
    return PasteboardType::kTiff;
}

QString nameOrUnknown(const RunningApplication &application)
{
    return application.localizedName.isEmpty() ? u"Unknown"_s : application.localizedName;
}

} // namespace

PastePipeline::PastePipeline(Pasteboard &pasteboard, Workspace &workspace,
                             PasteKeystroke &keystroke, Scheduler &scheduler,
                             ClipboardMonitor &monitor, ClipboardItemManager &itemManager,
                             const UserDefaults &defaults, const ImageCodec &codec)
    : m_pasteboard(pasteboard)
    , m_workspace(workspace)
    , m_keystroke(keystroke)
    , m_scheduler(scheduler)
    , m_monitor(monitor)
    , m_itemManager(itemManager)
    , m_defaults(defaults)
    , m_codec(codec)
{
}

PastePipeline::~PastePipeline() = default;

void PastePipeline::pasteItem(const ClipboardItem &item)
{
    m_isPasting = true;
    m_monitor.setPaused(true);
    logDragPaste(m_defaults, [&] {
        return u"pasteItem start type=%1 id=%2"_s.arg(rawValue(item.contentType),
                                                      uuidString(item.id));
    });
    m_pasteboard.write(contentsOf(item));
    printLine(u"Item copied to clipboard"_s);
    if (onHideWindow)
        onHideWindow();
    later(kPasteRefocusDelay, [this, target = m_previouslyActiveApp] { refocus(target); });
}

void PastePipeline::internalCopyWillWrite()
{
    // The flag is no count: a paste that ends meanwhile ends this pause too.
    m_monitor.setPaused(true);
    later(kInternalCopyPauseDuration, [this] { m_monitor.setPaused(false); });
}

PasteboardContents PastePipeline::contentsOf(const ClipboardItem &item) const
{
    switch (item.contentType) {
    case ClipboardContentType::Text:
    case ClipboardContentType::Url: return textFamilyContents(item);
    case ClipboardContentType::Image: return imageContents(item);
    case ClipboardContentType::File: return fileContents(item);
    case ClipboardContentType::Mixed: return {};
    }
    return {};
}

PasteboardContents PastePipeline::imageContents(const ClipboardItem &item) const
{
    PasteboardContents contents;
    auto entry = imageOfFile(item);
    if (!entry)
        entry = item.imageRepresentation ? imageInMemory(*item.imageRepresentation)
                                         : imageOfReloadedFile(item);
    if (entry) {
        contents.entries.append(std::move(*entry));
        return contents;
    }
    logDragPaste(m_defaults, [&] {
        return u"writeImageToPasteboard exhausted all sources for id=%1"_s.arg(uuidString(item.id));
    });
    printLine(u"Failed to restore image data from history item"_s);
    logDragPaste(m_defaults, [] {
        return u"pasteItem image failed to write to NSPasteboard"_s;
    });
    return contents;
}

std::optional<PasteboardContents::Entry>
PastePipeline::imageOfFile(const ClipboardItem &item) const
{
    if (!item.imageFileName)
        return std::nullopt;
    const QString &name = *item.imageFileName;
    auto bytes = readFile(QDir(m_itemManager.imagesDirectory()).filePath(name));
    if (!bytes) {
        logDragPaste(m_defaults, [&] {
            return u"writeImageToPasteboard failed reading file name=%1"_s.arg(name);
        });
        return std::nullopt;
    }
    const QString extension = QFileInfo(name).suffix().toLower();
    const QStringView type = typeForExtension(extension);
    logDragPaste(m_defaults, [&] {
        return u"writeImageToPasteboard from file name=%1 ext=%2 bytes=%3 type=%4"_s
            .arg(name, extension)
            .arg(bytes->size())
            .arg(type);
    });
    return PasteboardContents::Entry{type.toString(), std::move(*bytes)};
}

PasteboardContents::Entry PastePipeline::imageInMemory(const QByteArray &representation) const
{
    auto image = m_codec.tiffFromPicture(representation);
    QByteArray bytes = image ? std::move(image->tiff) : representation;
    logDragPaste(m_defaults, [&] {
        const QString source = image ? u"from in-memory imageRepresentation -> tiff"_s
                                     : u"fallback raw imageRepresentation"_s;
        return u"writeImageToPasteboard %1 bytes=%2"_s.arg(source).arg(bytes.size());
    });
    return {PasteboardType::kTiff.toString(), std::move(bytes)};
}

/// A file that could not be read may be readable a moment later: it is on its way back from
/// somebody's edit, or on a disk that had to wake up.
std::optional<PasteboardContents::Entry>
PastePipeline::imageOfReloadedFile(const ClipboardItem &item) const
{
    if (!item.imageFileName)
        return std::nullopt;
    const auto file = readFile(QDir(m_itemManager.imagesDirectory()).filePath(*item.imageFileName));
    auto image = file ? m_codec.tiffFromPicture(*file) : std::nullopt;
    if (!image)
        return std::nullopt;
    logDragPaste(m_defaults, [&] {
        return u"writeImageToPasteboard fallback loadImage() -> tiff bytes=%1"_s.arg(
            image->tiff.size());
    });
    return PasteboardContents::Entry{PasteboardType::kTiff.toString(), std::move(image->tiff)};
}

PasteboardContents PastePipeline::fileContents(const ClipboardItem &item) const
{
    PasteboardContents contents;
    if (const auto resolved = m_itemManager.resolveFileURL(item)) {
        m_itemManager.refreshStaleBookmark(item, resolved->url, resolved->isStale);
        contents.add(PasteboardType::kFileUrl, resolved->url.toEncoded());
        // Nothing of ours is open for the program that reads the file.
        logDragPaste(m_defaults, [&] {
            return u"pasteItem file writeObjects resolved url=%1 stale=%2 accessing=false"_s.arg(
                FilePath::of(resolved->url), resolved->isStale ? u"true"_s : u"false"_s);
        });
        return contents;
    }
    if (!item.filePath)
        return contents;
    contents.add(PasteboardType::kFileUrl, FilePath::toUrl(*item.filePath).toEncoded());
    logDragPaste(m_defaults, [&] {
        return u"pasteItem file writeObjects fallback path=%1"_s.arg(*item.filePath);
    });
    return contents;
}

void PastePipeline::refocus(const std::optional<RunningApplication> &target)
{
    if (!target) {
        finishPaste(0ms);
        return;
    }
    printLine(u"Activating previous app: "_s + nameOrUnknown(*target));
    m_workspace.activate(*target);
    m_keystroke.prepare(*target);
    later(kPasteKeystrokeDelay, [this] { sendKeystroke(); });
}

void PastePipeline::sendKeystroke()
{
    finishPaste(simulatePasteKeystroke() ? kPasteFinishDelay : 0ms);
}

bool PastePipeline::simulatePasteKeystroke()
{
    if (!m_keystroke.isPermitted()) {
        printLine(u"Accessibility permission: DENIED ✗"_s);
        printLine(u"ERROR: 需要辅助功能权限才能自动粘贴！"_s);
        printLine(u"请在 系统设置 → 隐私与安全性 → 辅助功能 中授权 Xcode"_s);
        m_keystroke.requestPermission();
        return false;
    }
    printLine(u"Accessibility permission: GRANTED ✓"_s);
    if (!m_keystroke.isTargetFocused()) {
        printLine(u"The paste target is not in front; the entry stays on the clipboard"_s);
        return false;
    }
    if (!m_keystroke.postKeyDown()) {
        printLine(u"ERROR: Failed to create keyDown event!"_s);
        return false;
    }
    printLine(u"Posted keyDown event"_s);
    if (!m_keystroke.postKeyUp()) {
        printLine(u"ERROR: Failed to create keyUp event!"_s);
        return false;
    }
    printLine(u"Posted keyUp event"_s);
    printLine(u"Simulated Cmd+V paste completed"_s);
    return true;
}

void PastePipeline::finishPaste(std::chrono::milliseconds delay)
{
    later(delay, [this] {
        m_isPasting = false;
        m_monitor.setPaused(false);
    });
}

void PastePipeline::later(std::chrono::milliseconds delay, std::function<void()> step)
{
    m_scheduler.runAfter(delay, [alive = std::weak_ptr(m_alive), step = std::move(step)] {
        if (!alive.expired())
            step();
    });
}
