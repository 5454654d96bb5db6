#pragma once

#include "platform/DesktopIcons.h"
#include "platform/linux/BoundedCalls.h"

#include <functional>
#include <memory>
#include <mutex>

/// Icons by the desktop entries of programs, by the kinds of files, and by the theme that the
/// person has chosen. The theme is asked for once, with the first icon.
class ThemedIcons : public DesktopIcons
{
public:
    using ThemeName = std::function<std::optional<QString>()>;

    /// \a desktopThemeName is asked on the thread that wants an icon; where it does not know one,
    /// the settings files of the desktops are looked at.
    explicit ThemedIcons(ThemeName desktopThemeName);
    ~ThemedIcons() override;

    std::optional<QByteArray> applicationIcon(const QString &bundleIdentifier,
                                              int side) const override;
    std::optional<QByteArray> fileIcon(const QString &path, int side) const override;

private:
    struct Sources;

    Sources &sources() const;
    bool isFolder(const QString &path) const;

    ThemeName m_desktopThemeName;
    BoundedCalls m_calls;
    mutable std::unique_ptr<Sources> m_sources; ///< Guarded by the mutex below.
    mutable std::mutex m_mutex;
};
