#pragma once

#include "platform/DesktopIcons.h"

#include <QMap>

/// Icons that a test puts there before they are asked for.
class FakeDesktopIcons : public DesktopIcons
{
public:
    std::optional<QByteArray> applicationIcon(const QString &bundleIdentifier,
                                              int) const override
    {
        return found(applications, bundleIdentifier);
    }

    std::optional<QByteArray> fileIcon(const QString &path, int) const override
    {
        return found(files, path);
    }

    QMap<QString, QByteArray> applications; ///< By identifier.
    QMap<QString, QByteArray> files; ///< By the ends of their paths.

private:
    static std::optional<QByteArray> found(const QMap<QString, QByteArray> &icons,
                                           const QString &name)
    {
        for (const auto &[end, icon] : icons.asKeyValueRange()) {
            if (name.endsWith(end))
                return icon;
        }
        return std::nullopt;
    }
};
