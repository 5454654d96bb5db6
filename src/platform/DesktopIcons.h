#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// The pictures that the desktop has for programs and for kinds of files. Any thread but the main
/// one, for all of it reads from disks.
class DesktopIcons
{
public:
    virtual ~DesktopIcons() = default;

    /// Picture files, SVG among them, of the size next to squares of \a side pixels. Absent if the
    /// program is not installed or has no icon.
    virtual std::optional<QByteArray> applicationIcon(const QString &bundleIdentifier,
                                                      int side) const = 0;

    /// The same for the file at \a path: as a folder if one is there, else by its name, and nothing
    /// need be there. Absent if the desktop has no icon even for files of unknown kinds. Waits for
    /// the file system, but not for long.
    virtual std::optional<QByteArray> fileIcon(const QString &path, int side) const = 0;
};
