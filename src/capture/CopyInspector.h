#pragma once

#include "capture/ClipboardCopy.h"

class Clock;
class FileReferences;
class PrivacySettingsManager;

/// Asks about a copy, at once, what may be different later. Main thread only.
class CopyInspector
{
public:
    /// Everything handed over must outlive the inspector.
    CopyInspector(const Clock &clock, const PrivacySettingsManager &privacySettings,
                  const FileReferences &fileReferences);

    /// Whether the program that was in front is on the list of those whose copies are not recorded.
    /// What comes from another device is never ignored.
    bool isIgnored(const PasteboardSnapshot &snapshot) const;

    /// A printed line tells of files.
    ClipboardCopy inspect(const PasteboardSnapshot &snapshot) const;

private:
    bool hasExistingFiles(const PasteboardSnapshot &snapshot) const;
    void addFiles(ClipboardCopy &copy) const;

    const Clock &m_clock;
    const PrivacySettingsManager &m_privacySettings;
    const FileReferences &m_fileReferences;
};
