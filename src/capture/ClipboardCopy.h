#pragma once

#include "foundation/Timestamp.h"
#include "platform/Pasteboard.h"

/// Something that was copied, with what had to be asked of the desktop when it was seen: all that
/// an entry is made of. Can go to any thread.
struct ClipboardCopy
{
    PasteboardSnapshot snapshot;
    Timestamp time{};
    std::optional<QString> sourceBundleIdentifier; ///< As the desktop told it.
    bool isRemote = false; ///< From another device, whatever program was in front here.
    QStringList filePaths; ///< Of the copied files; empty unless all of them are there.
    std::optional<QByteArray> fileBookmark; ///< Of the first file.

    /// What the printed lines about it end with.
    QString remoteSuffix() const
    {
        return isRemote ? QStringLiteral(" remote=true") : QStringLiteral(" remote=false");
    }
};
