#pragma once

#include "core/ClipboardItem.h"
#include "platform/Pasteboard.h"

class ClipboardItemManager;
class ImageCodec;
class ScopedFileLease;
class UserDefaults;

/// Puts an entry of the history back on the pasteboard, for a program that is about to paste it.
/// Main thread only.
class PasteboardItemWriter
{
public:
    /// Everything handed in must outlive the writer.
    PasteboardItemWriter(Pasteboard &pasteboard, ClipboardItemManager &itemManager,
                         ScopedFileLease &fileLease, const ImageCodec &codec,
                         const UserDefaults &defaults);

    /// Replaces what is on the pasteboard, also if nothing of \a item can be had any more; a
    /// printed line tells of that. For a file a lease begins.
    void write(const ClipboardItem &item);

private:
    PasteboardContents contentsOf(const ClipboardItem &item);
    /// The picture as it is stored, else as it is in memory. False if there is none any more.
    [[nodiscard]] bool writeImageToPasteboard(const ClipboardItem &item,
                                              PasteboardContents &pasteboard) const;
    bool writeImageFile(const QString &name, PasteboardContents &pasteboard) const;
    void writeImageInMemory(const QByteArray &representation, PasteboardContents &pasteboard) const;
    bool writeReloadedImage(const QString &name, PasteboardContents &pasteboard) const;
    void writeFile(const ClipboardItem &item, PasteboardContents &pasteboard);

    Pasteboard &m_pasteboard;
    ClipboardItemManager &m_itemManager;
    ScopedFileLease &m_fileLease;
    const ImageCodec &m_codec;
    const UserDefaults &m_defaults;
};
