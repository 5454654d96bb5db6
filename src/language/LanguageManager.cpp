#include "language/LanguageManager.h"

#include "foundation/UserDefaults.h"
#include "language/Localized.h"

#include <QLocale>

using namespace Qt::StringLiterals;

namespace {

const QString kDefaultsKey = u"AppLanguage"_s;
const QString kEnglishCode = u"en"_s;
const QString kChineseCode = u"zh-Hans"_s;

QString rawValue(AppLanguage language)
{
    switch (language) {
    case AppLanguage::System: return u"system"_s;
    case AppLanguage::English: return u"english"_s;
    case AppLanguage::Chinese: return u"chinese"_s;
    }
    Q_UNREACHABLE();
}

/// English where nothing was chosen, whatever the system speaks.
AppLanguage storedLanguage(const UserDefaults &defaults)
{
    const std::optional<QString> stored = defaults.string(kDefaultsKey);
    for (const AppLanguage language : {AppLanguage::System, AppLanguage::Chinese}) {
        if (stored == rawValue(language))
            return language;
    }
    return AppLanguage::English;
}

QStringList sessionLanguages()
{
    return QLocale::system().uiLanguages();
}

/// The names under which a table may lie, best first. A text in another language is better than
/// none.
QStringList tableNames(const QString &code)
{
    QString underscored = code;
    underscored.replace(u'-', u'_');
    return {code,
            code + u"-CN"_s,
            underscored,
            underscored + u"_CN"_s,
            kChineseCode,
            u"zh-Hant"_s,
            u"zh_CN"_s,
            u"zh"_s};
}

} // namespace

QString displayName(AppLanguage language)
{
    switch (language) {
    case AppLanguage::System: return localized(u"settings.language.system"_s, u"Follow System"_s);
    case AppLanguage::English: return localized(u"settings.language.english"_s, u"English"_s);
    case AppLanguage::Chinese: return localized(u"settings.language.chinese"_s, u"简体中文"_s);
    }
    Q_UNREACHABLE();
}

LanguageManager::LanguageManager(UserDefaults &defaults)
    : LanguageManager(defaults, LanguageTables(), sessionLanguages)
{
}

LanguageManager::LanguageManager(UserDefaults &defaults, LanguageTables tables,
                                 PreferredLanguages preferredLanguages)
    : m_defaults(defaults)
    , m_tables(std::move(tables))
    , m_preferredLanguages(std::move(preferredLanguages))
    , m_currentLanguage(storedLanguage(defaults))
{
}

LanguageManager::~LanguageManager()
{
    Localizing::end(this);
}

void LanguageManager::install()
{
    Localizing::begin(this);
}

void LanguageManager::setLanguage(AppLanguage language)
{
    m_currentLanguage = language;
    m_table.reset();
    m_defaults.set(kDefaultsKey, rawValue(language));
    emit languageChanged();
}

QString LanguageManager::languageCode() const
{
    if (m_currentLanguage == AppLanguage::English)
        return kEnglishCode;
    if (m_currentLanguage == AppLanguage::Chinese)
        return kChineseCode;
    const QStringList languages = m_preferredLanguages();
    for (const QString &language : languages) {
        if (language.startsWith("zh"_L1))
            return kChineseCode;
        if (language.startsWith("en"_L1))
            return kEnglishCode;
    }
    return kEnglishCode;
}

QString LanguageManager::text(const QString &key, const QString &fallback)
{
    if (!m_table)
        m_table = findTable();
    const LanguageTables::Table *table = *m_table;
    if (table == nullptr)
        return fallback;
    const auto found = table->constFind(key);
    return found != table->constEnd() && *found != key ? *found : fallback;
}

void LanguageManager::systemLocaleChanged()
{
    if (m_currentLanguage != AppLanguage::System)
        return;
    m_table.reset();
    emit languageChanged();
}

const LanguageTables::Table *LanguageManager::findTable()
{
    const QStringList names = tableNames(languageCode());
    for (const QString &name : names) {
        if (const LanguageTables::Table *table = m_tables.find(name))
            return table;
    }
    return nullptr;
}
