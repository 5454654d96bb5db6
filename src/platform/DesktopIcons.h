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

    /// The same for a file that is called like \a fileName, which need not exist. Absent for kinds
    /// of files that the desktop does not tell by name, or has no icon for.
    virtual std::optional<QByteArray> fileIcon(const QString &fileName, int side) const = 0;
};
