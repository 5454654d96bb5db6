#include "tags/TagManager.h"

#include "foundation/TextTools.h"
#include "foundation/UserDefaults.h"

#include <nlohmann/json.hpp>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QString kTagsKey = u"custom.tags"_s;
const QString kTagsV2Key = u"custom.tags.v2"_s;

/// FNV-1a, 64 bits (Fowler, Noll, Vo).
quint64 fnv1a(QByteArrayView bytes)
{
    quint64 hash = 0xcbf29ce484222325;
    for (const char byte : bytes)
        hash = (hash ^ uchar(byte)) * 0x100000001b3;
    return hash;
}

std::optional<QString> textIn(const nlohmann::json &object, const char *key)
{
    const auto found = object.find(key);
    if (found == object.end() || !found->is_string())
        return std::nullopt;
    return QString::fromStdString(found->get<std::string>());
}

/// Absent unless \a text is written as an identity is stored, in either case.
std::optional<QUuid> uuidIn(const QString &text)
{
    const QUuid uuid = QUuid::fromString(text);
    if (uuid.toString(QUuid::WithoutBraces) != text.toLower())
        return std::nullopt;
    return uuid;
}

std::optional<Tag> tagFromJson(const nlohmann::json &object)
{
    if (!object.is_object())
        return std::nullopt;
    const auto id = uuidIn(textIn(object, "id").value_or(QString()));
    const auto name = textIn(object, "name");
    const auto color = tagColorFromRaw(textIn(object, "color").value_or(QString()));
    if (!id || !name || !color)
        return std::nullopt;
    return Tag{*id, *name, *color};
}

nlohmann::json jsonOf(const Tag &tag)
{
    return {{"id", tag.id.toString(QUuid::WithoutBraces).toUpper().toStdString()},
            {"name", tag.name.toStdString()},
            {"color", rawValue(tag.color).toStdString()}};
}

QString trimmed(const QString &text)
{
    return decodedUtf8(trimmedUtf8(text.toUtf8()).toByteArray());
}

} // namespace

TagManager::TagManager(UserDefaults &defaults)
    : m_defaults(defaults)
{
    load();
}

QStringList TagManager::tagNames() const
{
    QStringList names;
    for (const Tag &tag : m_tags)
        names.append(tag.name);
    return names;
}

QString TagManager::normalizedName(const QString &name)
{
    return firstCharacters(trimmed(name), maxTagLength);
}

bool TagManager::createTag(const QString &name, std::optional<TagColor> color)
{
    const QString normalized = normalizedName(name);
    if (normalized.isEmpty() || indexOf(normalized) || m_tags.size() >= absoluteMaxTagCount)
        return false;
    m_tags.append({QUuid::createUuid(), normalized,
                   color.value_or(pickColor(normalized, usedColors()))});
    saveAndAnnounce();
    return true;
}

bool TagManager::renameTag(const QString &oldName, const QString &newName)
{
    const QString normalized = normalizedName(newName);
    if (normalized.isEmpty())
        return false;
    const QString lowered = normalized.toLower();
    const bool isTaken = std::ranges::any_of(
        m_tags, [&lowered](const Tag &tag) { return tag.name.toLower() == lowered; });
    if (oldName.toLower() != lowered && isTaken)
        return false;
    const auto index = indexOf(oldName);
    if (!index)
        return false;
    QSet<TagColor> others;
    for (qsizetype i = 0; i < m_tags.size(); ++i) {
        if (i != *index)
            others.insert(m_tags[i].color);
    }
    m_tags[*index].name = normalized;
    m_tags[*index].color = pickColor(normalized, others);
    saveAndAnnounce();
    return true;
}

void TagManager::deleteTag(const QString &name)
{
    m_tags.removeIf([&name](const Tag &tag) { return tag.name == name; });
    save();
}

bool TagManager::moveTagToFront(const QString &name)
{
    return moveTag(indexOf(name), 0);
}

bool TagManager::moveTagUp(const QString &name)
{
    const auto index = indexOf(name);
    return moveTag(index, index.value_or(0) - 1);
}

bool TagManager::moveTagDown(const QString &name)
{
    const auto index = indexOf(name);
    return moveTag(index, index.value_or(0) + 1);
}

std::optional<TagColor> TagManager::color(const QString &name) const
{
    const auto index = indexOf(name);
    return index ? std::optional(m_tags[*index].color) : std::nullopt;
}

/// The colour of the name's hash, or the next one that is not in \a used. The case of the name and
/// white space around it make no difference.
TagColor TagManager::pickColor(const QString &name, const QSet<TagColor> &used) const
{
    const quint64 start = fnv1a(trimmed(name).toLower().toUtf8()) % kTagColorCount;
    for (quint64 step = 0; step < kTagColorCount; ++step) {
        const auto candidate = TagColor((start + step) % kTagColorCount);
        if (!used.contains(candidate))
            return candidate;
    }
    return TagColor(start);
}

QSet<TagColor> TagManager::usedColors() const
{
    QSet<TagColor> used;
    for (const Tag &tag : m_tags)
        used.insert(tag.color);
    return used;
}

std::optional<qsizetype> TagManager::indexOf(const QString &name) const
{
    const auto found = std::ranges::find(m_tags, name, &Tag::name);
    return found == m_tags.end() ? std::nullopt : std::optional(found - m_tags.begin());
}

bool TagManager::moveTag(std::optional<qsizetype> index, qsizetype place)
{
    if (!index || place == *index || place < 0 || place >= m_tags.size())
        return false;
    m_tags.move(*index, place);
    saveAndAnnounce();
    return true;
}

void TagManager::load()
{
    if (auto stored = storedTags()) {
        m_tags = *stored;
        recolor();
        return;
    }
    // What earlier versions left, or what is left if the newer value is damaged.
    const auto names = m_defaults.stringList(kTagsKey);
    if (!names)
        return;
    for (const QString &name : *names)
        m_tags.append({QUuid::createUuid(), name, pickColor(name, {})});
    save();
}

/// Absent if there are none, or if they cannot be read.
std::optional<QList<Tag>> TagManager::storedTags() const
{
    const auto data = m_defaults.data(kTagsV2Key);
    if (!data)
        return std::nullopt;
    const auto json = nlohmann::json::parse(data->begin(), data->end(), nullptr, false);
    if (!json.is_array())
        return std::nullopt;
    QList<Tag> tags;
    for (const auto &entry : json) {
        const auto tag = tagFromJson(entry);
        if (!tag)
            return std::nullopt;
        tags.append(*tag);
    }
    return tags;
}

/// The names and their order decide; stored colours are only a record of what they gave.
void TagManager::recolor()
{
    QSet<TagColor> used;
    bool isChanged = false;
    for (Tag &tag : m_tags) {
        const TagColor expected = pickColor(tag.name, used);
        isChanged = isChanged || tag.color != expected;
        tag.color = expected;
        used.insert(expected);
    }
    if (isChanged)
        save();
}

void TagManager::save()
{
    auto json = nlohmann::json::array();
    for (const Tag &tag : m_tags)
        json.push_back(jsonOf(tag));
    m_defaults.set(kTagsV2Key, QByteArray::fromStdString(json.dump()));
    m_defaults.set(kTagsKey, tagNames());
    QMetaObject::invokeMethod(this, &TagManager::tagsDidChange, Qt::QueuedConnection);
}

void TagManager::saveAndAnnounce()
{
    save();
    emit tagsDidChange();
}
