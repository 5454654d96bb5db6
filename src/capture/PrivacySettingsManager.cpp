#include "capture/PrivacySettingsManager.h"

#include "foundation/UserDefaults.h"
#include "language/Localized.h"

#include <QCollator>

#include <nlohmann/json.hpp>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QString kDefaultsKey = u"privacy.ignored_apps"_s;

/// A program that is ignored until the user says otherwise; its name follows the language.
struct DefaultApp
{
    QString bundleIdentifier;
    QString nameKey;
    QString englishName;

    QString localizedName() const { return localized(nameKey, englishName); }
    bool hasIdentifier(const QString &identifier) const
    {
        return identifier.toLower() == bundleIdentifier.toLower();
    }
};

const QList<DefaultApp> &defaultApps()
{
    static const QList<DefaultApp> apps{
        {u"com.apple.keychainaccess"_s, u"settings.privacy.default.keychain_access"_s,
         u"Keychain Access"_s},
        {u"com.apple.Passwords"_s, u"settings.privacy.default.passwords"_s, u"Passwords"_s},
    };
    return apps;
}

/// Lower-cased identifiers of programs that show what another one keeps.
const QHash<QString, QSet<QString>> &bundleIDAliases()
{
    static const QHash<QString, QSet<QString>> aliases{
        {u"com.apple.passwords"_s, {u"com.apple.systempreferences"_s}},
    };
    return aliases;
}

QList<IgnoredApp> defaultList()
{
    QList<IgnoredApp> apps;
    for (const DefaultApp &app : defaultApps())
        apps.append({app.localizedName(), app.bundleIdentifier, std::nullopt});
    return apps;
}

std::optional<QString> stringMember(const nlohmann::json &object, const char *name)
{
    const auto member = object.find(name);
    if (member == object.end() || !member->is_string())
        return std::nullopt;
    return QString::fromStdString(member->get_ref<const std::string &>());
}

std::optional<IgnoredApp> decodeApp(const nlohmann::json &object)
{
    if (!object.is_object())
        return std::nullopt;
    const auto name = stringMember(object, "name");
    const auto identifier = stringMember(object, "bundleIdentifier");
    if (!name || !identifier)
        return std::nullopt;
    const auto path = object.find("path");
    const bool hasPath = path != object.end() && !path->is_null();
    if (hasPath && !path->is_string())
        return std::nullopt;
    return IgnoredApp{*name, *identifier, stringMember(object, "path")};
}

std::optional<QList<IgnoredApp>> decode(const QByteArray &json)
{
    const auto array = nlohmann::json::parse(json.begin(), json.end(), nullptr, false);
    if (!array.is_array())
        return std::nullopt;
    QList<IgnoredApp> apps;
    for (const auto &element : array) {
        const auto app = decodeApp(element);
        if (!app)
            return std::nullopt;
        apps.append(*app);
    }
    return apps;
}

QByteArray encode(const QList<IgnoredApp> &apps)
{
    auto array = nlohmann::ordered_json::array();
    for (const IgnoredApp &app : apps) {
        nlohmann::ordered_json object;
        object["name"] = app.name.toStdString();
        object["bundleIdentifier"] = app.bundleIdentifier.toStdString();
        if (app.path)
            object["path"] = app.path->toStdString();
        array.push_back(std::move(object));
    }
    return QByteArray::fromStdString(array.dump());
}

void localizeNames(QList<IgnoredApp> &apps)
{
    for (IgnoredApp &app : apps) {
        for (const DefaultApp &known : defaultApps()) {
            if (known.hasIdentifier(app.bundleIdentifier))
                app.name = known.localizedName();
        }
    }
}

QList<IgnoredApp> normalized(const QList<IgnoredApp> &apps)
{
    QSet<QString> seen;
    QList<IgnoredApp> result;
    for (const IgnoredApp &app : apps) {
        const QString identifier = app.bundleIdentifier.trimmed();
        if (identifier.isEmpty() || seen.contains(identifier))
            continue;
        seen.insert(identifier);
        result.append({app.name.trimmed(), identifier, app.path});
    }
    QCollator collator;
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::ranges::stable_sort(result, [&collator](const IgnoredApp &one, const IgnoredApp &other) {
        return collator.compare(one.name, other.name) < 0;
    });
    return result;
}

} // namespace

QList<IgnoredApp> PrivacySettingsManager::ignoredApps() const
{
    const auto json = m_defaults.data(kDefaultsKey);
    const auto stored = json ? decode(*json) : std::nullopt;
    if (!stored)
        return normalized(defaultList());
    QList<IgnoredApp> apps = *stored;
    localizeNames(apps);
    return normalized(apps);
}

void PrivacySettingsManager::saveIgnoredApps(const QList<IgnoredApp> &apps)
{
    m_defaults.set(kDefaultsKey, encode(normalized(apps)));
}

QSet<QString> PrivacySettingsManager::ignoredBundleIdentifiers() const
{
    QSet<QString> listed;
    for (const IgnoredApp &app : ignoredApps())
        listed.insert(app.bundleIdentifier.toLower());
    QSet<QString> identifiers = listed;
    for (const QString &identifier : std::as_const(listed))
        identifiers.unite(bundleIDAliases().value(identifier));
    return identifiers;
}
