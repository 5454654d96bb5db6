#include "platform/linux/DesktopEntries.h"

#include "foundation/RegularFile.h"
#include "platform/linux/DataFolders.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kSuffix(".desktop");
/// Entries with every translation are some tens of kilobytes; what is larger is no entry.
constexpr qint64 kMaxFileBytes = 1024 * 1024;

QStringList sessionFolders()
{
    QStringList folders = dataFolders();
    for (QString &folder : folders)
        folder += "/applications"_L1;
    return folders;
}

QString sessionLocale()
{
    for (const char *variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const QString locale = qEnvironmentVariable(variable);
        if (!locale.isEmpty())
            return locale;
    }
    return {};
}

QList<QByteArray> nameKeysFor(const QString &locale)
{
    const qsizetype at = locale.indexOf(u'@');
    const QString modifier = at < 0 ? QString() : locale.sliced(at);
    const QString territory = locale.section(u'@', 0, 0).section(u'.', 0, 0);
    const QString language = territory.section(u'_', 0, 0);

    QList<QByteArray> keys;
    for (const QString &tag : {territory + modifier, territory, language + modifier, language}) {
        const QByteArray key = "Name[" + tag.toUtf8() + ']';
        if (!tag.isEmpty() && !keys.contains(key))
            keys.append(key);
    }
    keys.append("Name");
    return keys;
}

/// Undoes the escapes of a string value.
QString unescaped(QByteArrayView value)
{
    QByteArray plain;
    plain.reserve(value.size());
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value[i] != '\\' || i + 1 == value.size()) {
            plain += value[i];
            continue;
        }
        switch (value[++i]) {
        case 's': plain += ' '; break;
        case 'n': plain += '\n'; break;
        case 't': plain += '\t'; break;
        case 'r': plain += '\r'; break;
        default: plain += value[i]; break;
        }
    }
    return QString::fromUtf8(plain);
}

/// Calls \a visit with key and value of each line of the group that describes the program.
template <typename Visitor>
void visitKeys(QByteArrayView file, Visitor &&visit)
{
    bool isInGroup = false;
    while (!file.isEmpty()) {
        const qsizetype end = file.indexOf('\n');
        const QByteArrayView line = (end < 0 ? file : file.first(end)).trimmed();
        file = end < 0 ? QByteArrayView() : file.sliced(end + 1);

        if (line.startsWith('[')) {
            if (isInGroup)
                return;
            isInGroup = line == "[Desktop Entry]";
            continue;
        }
        const qsizetype equals = line.indexOf('=');
        if (!isInGroup || equals < 0 || line.startsWith('#'))
            continue;
        visit(line.first(equals).trimmed(), line.sliced(equals + 1).trimmed());
    }
}

std::optional<QByteArray> fileContents(const QString &path)
{
    const auto file = RegularFile::open(path);
    return file ? file->readUpTo(kMaxFileBytes) : std::nullopt;
}

/// Chromium appends its profile folder to its name: "chromium (/home/me/profile)".
QString withoutProfile(const QString &className)
{
    const qsizetype parenthesis = className.indexOf(" ("_L1);
    return parenthesis > 0 && className.endsWith(u')') ? className.first(parenthesis) : className;
}

bool isSameClass(const QString &left, const QString &right)
{
    return left.compare(right, Qt::CaseInsensitive) == 0;
}

} // namespace

DesktopEntries::DesktopEntries()
    : DesktopEntries(sessionFolders(), sessionLocale())
{
}

DesktopEntries::DesktopEntries(QStringList folders, const QString &locale)
    : m_folders(std::move(folders))
    , m_nameKeys(nameKeysFor(locale))
{
}

std::optional<DesktopEntry> DesktopEntries::findById(const QString &id) const
{
    if (id.isEmpty())
        return std::nullopt;
    if (const auto known = m_entries.constFind(id); known != m_entries.cend())
        return *known;
    if (const auto entry = findUnindexed(id))
        return entry;
    // Files in subfolders have ids with the folder's name in front.
    const auto entry = id.contains(u'-') ? findIndexed(id.toLower()) : std::nullopt;
    return entry && entry->id == id ? entry : std::nullopt;
}

std::optional<DesktopEntry> DesktopEntries::findByWindow(const QString &gtkApplicationId,
                                                         const QString &instanceName,
                                                         const QString &className) const
{
    if (const auto entry = findById(gtkApplicationId))
        return entry;
    return findByClass(withoutProfile(instanceName), withoutProfile(className));
}

std::optional<DesktopEntry> DesktopEntries::findByClass(const QString &instanceName,
                                                        const QString &className) const
{
    // Most programs have one name for everything, and then one file answers.
    if (isSameClass(instanceName, className)) {
        const auto entry = findById(instanceName.toLower());
        if (entry && (entry->windowClass.isEmpty() || isSameClass(entry->windowClass, className)))
            return entry;
    }

    // The instance goes first: it tells a web application from the browser it runs in.
    const QStringList parts{instanceName.toLower(), className.toLower()};
    for (const QString &part : parts) {
        const QString id = part.isEmpty() ? QString() : index().idsByWindowClass.value(part);
        if (!id.isEmpty())
            return findIndexed(id);
    }
    for (const QString &part : parts) {
        if (const auto entry = part.isEmpty() ? std::nullopt : findIndexed(part))
            return entry;
    }
    for (const QString &part : parts) {
        const QString id = part.isEmpty() ? QString() : index().idsByLastName.value(part);
        if (!id.isEmpty())
            return findIndexed(id);
    }
    return std::nullopt;
}

std::optional<DesktopEntry> DesktopEntries::findUnindexed(const QString &id) const
{
    if (id.contains(u'/'))
        return std::nullopt;
    for (const QString &folder : m_folders) {
        const QString path = folder + u'/' + id + kSuffix;
        if (QFile::exists(path))
            return readEntry(id, path);
    }
    return std::nullopt;
}

std::optional<DesktopEntry> DesktopEntries::findIndexed(const QString &idLowerCase) const
{
    const auto file = index().filesById.constFind(idLowerCase);
    if (file == index().filesById.cend())
        return std::nullopt;
    return readEntry(file->id, file->path);
}

std::optional<DesktopEntry> DesktopEntries::readEntry(const QString &id, const QString &path) const
{
    if (const auto known = m_entries.constFind(id); known != m_entries.cend())
        return *known;
    const std::optional<QByteArray> contents = fileContents(path);
    if (!contents)
        return std::nullopt;

    DesktopEntry entry;
    entry.id = id;
    bool isHidden = false;
    qsizetype bestName = m_nameKeys.size();
    visitKeys(*contents, [&](QByteArrayView key, QByteArrayView value) {
        if (key == "StartupWMClass") {
            entry.windowClass = unescaped(value);
        } else if (key == "Categories") {
            entry.categories = unescaped(value).split(u';', Qt::SkipEmptyParts);
        } else if (key == "Icon") {
            entry.icon = unescaped(value);
        } else if (key == "Hidden") {
            isHidden = value == "true";
        } else if (key.startsWith("Name")) {
            const auto rank = std::ranges::find(m_nameKeys, key) - m_nameKeys.begin();
            if (rank < bestName) {
                bestName = rank;
                entry.name = unescaped(value);
            }
        }
    });
    // A hidden entry says that the program is not there, whatever the other folders hold.
    if (isHidden)
        return std::nullopt;
    m_entries.insert(id, entry);
    return entry;
}

const DesktopEntries::Index &DesktopEntries::index() const
{
    if (!m_index || m_index->foldersChangedAt != foldersChangedAt()) {
        m_entries.clear();
        m_index = buildIndex();
    }
    return *m_index;
}

DesktopEntries::Index DesktopEntries::buildIndex() const
{
    Index index;
    index.foldersChangedAt = foldersChangedAt();
    for (const QString &folder : m_folders)
        addFolder(folder, index);
    return index;
}

void DesktopEntries::addFolder(const QString &folder, Index &index) const
{
    QDirIterator files(folder, {u"*.desktop"_s}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        QString id = path.sliced(folder.size() + 1).chopped(kSuffix.size());
        id.replace(u'/', u'-');
        const QString lowered = id.toLower();
        if (index.filesById.contains(lowered))
            continue;
        index.filesById.insert(lowered, {id, path});
        const QString lastName = lowered.section(u'.', -1);
        if (!index.idsByLastName.contains(lastName))
            index.idsByLastName.insert(lastName, lowered);

        const QByteArray contents = fileContents(path).value_or(QByteArray());
        // Telling that there is no such key is a search through the bytes; taking the file apart
        // is worth it for the few that have it.
        if (!contents.contains("StartupWMClass"))
            continue;
        QString windowClass;
        bool isHidden = false;
        visitKeys(contents, [&](QByteArrayView key, QByteArrayView value) {
            if (key == "StartupWMClass")
                windowClass = unescaped(value).toLower();
            else if (key == "Hidden")
                isHidden = value == "true";
        });
        if (!windowClass.isEmpty() && !isHidden && !index.idsByWindowClass.contains(windowClass))
            index.idsByWindowClass.insert(windowClass, lowered);
    }
}

qint64 DesktopEntries::foldersChangedAt() const
{
    // Any change that matters adds, removes or replaces a file, and so touches its folder.
    qint64 latest = 0;
    for (const QString &folder : m_folders)
        latest = std::max(latest, QFileInfo(folder).lastModified().toMSecsSinceEpoch());
    return latest;
}
