#include "platform/linux/ThemedIcons.h"

#include "foundation/FilePath.h"
#include "foundation/RegularFile.h"
#include "platform/linux/DesktopEntries.h"
#include "platform/linux/IconTheme.h"

#include <QDir>
#include <QMimeDatabase>
#include <QSettings>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

/// Icons are smaller; what is not would take long to decode.
constexpr qint64 kMaxFileBytes = 1 << 20;
const auto kUsualTheme = u"Adwaita"_s;

std::optional<QByteArray> contents(const QString &path)
{
    if (path.isEmpty())
        return std::nullopt;
    const auto file = RegularFile::open(path);
    return file ? file->readUpTo(kMaxFileBytes) : std::nullopt;
}

/// What programs are told that ask neither the desktop nor a bus.
std::optional<QString> themeNameInFiles()
{
    QString folder = qEnvironmentVariable("XDG_CONFIG_HOME");
    if (folder.isEmpty())
        folder = QDir::homePath() + u"/.config"_s;
    const std::pair<QString, QString> places[]{
        {u"/kdeglobals"_s, u"Icons/Theme"_s},
        {u"/lxqt/lxqt.conf"_s, u"icon_theme"_s},
        {u"/gtk-3.0/settings.ini"_s, u"Settings/gtk-icon-theme-name"_s},
    };
    for (const auto &[file, key] : places) {
        const QString name
            = QSettings(folder + file, QSettings::IniFormat).value(key).toString();
        if (!name.isEmpty())
            return name;
    }
    return std::nullopt;
}

/// Some entries name a file where the name of an icon belongs.
QString withoutSuffix(const QString &name)
{
    for (const QLatin1StringView suffix : IconTheme::kSuffixes) {
        if (name.endsWith(suffix))
            return name.chopped(suffix.size());
    }
    return name;
}

} // namespace

struct ThemedIcons::Sources
{
    DesktopEntries entries;
    IconTheme theme;
    QMimeDatabase mimeTypes;
};

ThemedIcons::ThemedIcons(ThemeName desktopThemeName)
    : m_desktopThemeName(std::move(desktopThemeName))
{
}

ThemedIcons::~ThemedIcons() = default;

std::optional<QByteArray> ThemedIcons::applicationIcon(const QString &bundleIdentifier,
                                                       int side) const
{
    const std::lock_guard lock(m_mutex);
    const auto entry = sources().entries.findById(bundleIdentifier);
    if (!entry || entry->icon.isEmpty())
        return std::nullopt;
    if (entry->icon.startsWith(u'/'))
        return contents(entry->icon);
    return contents(sources().theme.find({withoutSuffix(entry->icon)}, side));
}

std::optional<QByteArray> ThemedIcons::fileIcon(const QString &path, int side) const
{
    const bool isFolder = this->isFolder(path);
    const std::lock_guard lock(m_mutex);
    const QMimeDatabase &types = sources().mimeTypes;
    const QMimeType type = isFolder ? types.mimeTypeForName(u"inode/directory"_s)
                                    : types.mimeTypeForFile(path, QMimeDatabase::MatchExtension);
    QStringList names;
    if (!type.isDefault())
        names += {type.iconName(), type.genericIconName()};
    names += {u"unknown"_s, u"text-x-generic"_s};
    return contents(sources().theme.find(names, side));
}

bool ThemedIcons::isFolder(const QString &path) const
{
    return m_calls
        .run<bool>([path = FilePath::toBytes(path)] {
            struct stat status = {};
            return ::stat(path.constData(), &status) == 0 && S_ISDIR(status.st_mode);
        })
        .value_or(false);
}

ThemedIcons::Sources &ThemedIcons::sources() const
{
    if (!m_sources) {
        auto name = m_desktopThemeName ? m_desktopThemeName() : std::nullopt;
        if (!name)
            name = themeNameInFiles();
        m_sources.reset(new Sources{
            {}, IconTheme(IconTheme::sessionFolders(), name.value_or(kUsualTheme)), {}});
    }
    return *m_sources;
}
