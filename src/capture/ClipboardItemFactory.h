#pragma once

#include "core/ClipboardItem.h"
#include "platform/Pasteboard.h"

#include <optional>

class Clock;
class FileReferences;
class PrivacySettingsManager;
class Workspace;

/// Turns what lies on the pasteboard into an entry of the history. Main thread only.
///
/// The entries carry no content hash: the history computes it, away from the main thread.
class ClipboardItemFactory
{
public:
    ClipboardItemFactory(const Workspace &workspace, const Clock &clock,
                         const PrivacySettingsManager &privacySettings,
                         const FileReferences &fileReferences);

    /// Files before text, text before styled text alone, and any text before a picture. Absent if
    /// the program in front is ignored, or if there is nothing that can be kept; a printed line says
    /// what was found.
    std::optional<ClipboardItem> makeClipboardItem(const PasteboardSnapshot &snapshot) const;

private:
    /// Where an entry comes from.
    struct Source
    {
        std::optional<QString> bundleIdentifier; ///< As the desktop told it.
        bool isRemote = false; ///< From another device, whatever program is in front here.
        bool isIgnored = false;
    };

    Source findSource(const PasteboardSnapshot &snapshot) const;
    ClipboardItem createItem(ClipboardContentType type, const Source &source) const;
    std::optional<ClipboardItem> createTextItem(const Utf8Text &text,
                                                const PasteboardSnapshot &snapshot,
                                                const Source &source) const;
    ClipboardItem createImageItem(const PasteboardImage &image, const Source &source) const;
    bool hasExistingFiles(const PasteboardSnapshot &snapshot) const;
    ClipboardItem createFileItem(const QList<QUrl> &urls, const Source &source) const;

    const Workspace &m_workspace;
    const Clock &m_clock;
    const PrivacySettingsManager &m_privacySettings;
    const FileReferences &m_fileReferences;
};
