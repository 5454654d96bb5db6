#include "platform/linux/IconTheme.h"

#include "foundation/RegularFile.h"
#include "platform/linux/DataFolders.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

/// Which every theme stands on in the end.
const auto kCommonTheme = u"hicolor"_s;
/// The largest descriptions have some tens of kilobytes.
constexpr qint64 kMaxDescriptionBytes = 1 << 20;
constexpr int kDefaultThreshold = 2;
constexpr qsizetype kMaxThemes = 20;

using Group = QHash<QByteArray, QByteArray>;

/// The lines of a description, by their groups.
QHash<QByteArray, Group> groupsIn(const QByteArray &description)
{
    QHash<QByteArray, Group> groups;
    QByteArray current;
    for (const QByteArray &raw : description.split('\n')) {
        const QByteArray line = raw.trimmed();
        const qsizetype equals = line.indexOf('=');
        if (line.startsWith('[') && line.endsWith(']'))
            current = line.sliced(1, line.size() - 2);
        else if (equals > 0 && !line.startsWith('#'))
            groups[current].insert(line.first(equals).trimmed(), line.sliced(equals + 1).trimmed());
    }
    return groups;
}

QByteArray descriptionAt(const QString &path)
{
    const auto file = RegularFile::open(path);
    return file ? file->readUpTo(kMaxDescriptionBytes).value_or(QByteArray()) : QByteArray();
}

QStringList listIn(const QByteArray &value)
{
    QStringList list = QString::fromUtf8(value).split(u',', Qt::SkipEmptyParts);
    for (QString &element : list)
        element = element.trimmed();
    return list;
}

int numberIn(const Group &group, const char *key, int otherwise)
{
    bool isNumber = false;
    const int number = group.value(key).toInt(&isNumber);
    return isNumber ? number : otherwise;
}

struct Sides
{
    int least;
    int most;
};

/// With how many pixels the icons of a directory can be drawn; absent if it does not tell its size.
std::optional<Sides> sidesIn(const Group &directory)
{
    // What is meant for a doubled scale has twice the pixels.
    const int scale = std::max(1, numberIn(directory, "Scale", 1));
    const int size = numberIn(directory, "Size", 0) * scale;
    if (size <= 0)
        return std::nullopt;
    const QByteArray type = directory.value("Type", "Threshold");
    if (type == "Scalable")
        return Sides{numberIn(directory, "MinSize", size / scale) * scale,
                     numberIn(directory, "MaxSize", size / scale) * scale};
    const int threshold
        = type == "Threshold" ? numberIn(directory, "Threshold", kDefaultThreshold) * scale : 0;
    return Sides{size - threshold, size + threshold};
}

QString fileIn(const QString &directory, const QString &name)
{
    if (name.isEmpty() || name.contains(u'/'))
        return {};
    for (const QLatin1StringView suffix : IconTheme::kSuffixes) {
        QString path = directory + u'/' + name + suffix;
        if (QFile::exists(path))
            return path;
    }
    return {};
}

} // namespace

IconTheme::IconTheme(QStringList folders, QString themeName)
    : m_folders(std::move(folders))
    , m_themeName(std::move(themeName))
{
}

QStringList IconTheme::sessionFolders()
{
    QStringList folders{QDir::homePath() + u"/.icons"_s};
    for (const QString &folder : dataFolders())
        folders.append(folder + u"/icons"_s);
    folders.append(u"/usr/share/pixmaps"_s);
    folders.removeDuplicates();
    return folders;
}

QString IconTheme::find(const QStringList &names, int side) const
{
    for (const Theme &theme : themes()) {
        for (const QString &name : names) {
            if (const QString path = findIn(theme, name, side); !path.isEmpty())
                return path;
        }
    }
    for (const QString &name : names) {
        if (const QString path = findWithoutTheme(name); !path.isEmpty())
            return path;
    }
    return {};
}

const QList<IconTheme::Theme> &IconTheme::themes() const
{
    if (m_loadedNames.isEmpty()) {
        load(m_themeName);
        load(kCommonTheme);
    }
    return m_themes;
}

void IconTheme::load(const QString &name) const
{
    const bool isName = !name.isEmpty() && !name.contains(u'/');
    if (!isName || m_loadedNames.contains(name) || m_loadedNames.size() >= kMaxThemes)
        return;
    m_loadedNames.append(name);

    const QHash<QByteArray, Group> groups = groupsIn(description(name));
    const Group about = groups.value("Icon Theme");
    Theme theme;
    for (const QString &directory : listIn(about.value("Directories"))) {
        const auto sides = sidesIn(groups.value(directory.toUtf8()));
        const QStringList paths = pathsOf(name + u'/' + directory);
        if (sides && !paths.isEmpty())
            theme.append({.paths = paths, .minSide = sides->least, .maxSide = sides->most});
    }
    m_themes.append(theme);
    for (const QString &parent : listIn(about.value("Inherits"))) {
        // It comes last, wherever it is named.
        if (parent != kCommonTheme)
            load(parent);
    }
}

/// Of the first folder that has one of this theme.
QByteArray IconTheme::description(const QString &name) const
{
    for (const QString &folder : m_folders) {
        const QByteArray found = descriptionAt(folder + u'/' + name + u"/index.theme"_s);
        if (!found.isEmpty())
            return found;
    }
    return {};
}

QStringList IconTheme::pathsOf(const QString &directory) const
{
    QStringList paths;
    for (const QString &folder : m_folders) {
        const QString path = folder + u'/' + directory;
        if (QDir(path).exists())
            paths.append(path);
    }
    return paths;
}

/// Making an icon smaller costs nothing to look at; making it larger does.
int IconTheme::Directory::distance(int side) const
{
    constexpr int kBlur = 1'000;
    if (side > maxSide)
        return (side - maxSide) * kBlur;
    return std::max(0, minSide - side);
}

QString IconTheme::findIn(const Theme &theme, const QString &name, int side) const
{
    QString best;
    int bestDistance = std::numeric_limits<int>::max();
    for (const Directory &directory : theme) {
        const int distance = directory.distance(side);
        if (distance >= bestDistance)
            continue;
        for (const QString &path : directory.paths) {
            if (const QString file = fileIn(path, name); !file.isEmpty()) {
                best = file;
                bestDistance = distance;
                break;
            }
        }
        if (bestDistance == 0)
            break;
    }
    return best;
}

QString IconTheme::findWithoutTheme(const QString &name) const
{
    for (const QString &folder : m_folders) {
        if (const QString file = fileIn(folder, name); !file.isEmpty())
            return file;
    }
    return {};
}
