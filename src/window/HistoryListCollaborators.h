#pragma once

#include <QString>

#include <functional>

class ApplicationNames;
class ClipboardItemManager;
class Clock;
class FileViewer;
class RowPictures;
class Scheduler;
class TagManager;
class UserDefaults;
class Workspace;
struct ClipboardItem;

/// What the list of the history works with; all of it must outlive the list.
struct HistoryListCollaborators
{
    const Workspace &workspace;
    ClipboardItemManager &itemManager;
    TagManager &tagManager;
    FileViewer &fileViewer;
    ApplicationNames &applicationNames;
    RowPictures &pictures;
    Scheduler &scheduler;
    const Clock &clock;
    const UserDefaults &defaults;
    /// Puts an entry on the pasteboard without pasting it.
    std::function<void(const ClipboardItem &)> copyItem = {};
    /// Tells the person that something cannot be done.
    std::function<void()> beep = {};
    /// The text on the pasteboard, for text fields; never waits for another program.
    std::function<QString()> pasteboardText = {};
};
