#pragma once

#include "language/LanguageTables.h"

#include <QObject>
#include <QStringList>

class UserDefaults;

enum class AppLanguage
{
    System, ///< English or Chinese, whichever the person prefers; English if neither.
    English,
    Chinese
};

/// The name for a list of languages to choose from.
QString displayName(AppLanguage language);

/// The language of the interface, and the texts in it. Main thread only.
///
/// A change counts from the next text on; what is on the screen is made anew by those who listen.
class LanguageManager : public QObject
{
    Q_OBJECT

public:
    /// The person's languages, best first, as in "zh-Hant-TW".
    using PreferredLanguages = std::function<QStringList()>;

    /// With the languages of the session and the tables of the program. \a defaults must outlive
    /// the manager.
    explicit LanguageManager(UserDefaults &defaults);
    LanguageManager(UserDefaults &defaults, LanguageTables tables,
                    PreferredLanguages preferredLanguages);
    ~LanguageManager() override;

    /// localized() gives texts of this manager from now on until it ends.
    void install();

    AppLanguage currentLanguage() const { return m_currentLanguage; }
    void setLanguage(AppLanguage language);

    /// "en" or "zh-Hans".
    QString languageCode() const;

    /// The text under \a key in the present language's table; \a fallback if there is none, or if
    /// the key stands there for its own text.
    QString text(const QString &key, const QString &fallback);

    /// The session's languages or its region have changed.
    void systemLocaleChanged();

signals:
    void languageChanged();

private:
    const LanguageTables::Table *findTable();

    UserDefaults &m_defaults;
    LanguageTables m_tables;
    PreferredLanguages m_preferredLanguages;
    AppLanguage m_currentLanguage;
    /// Of the present language, null if there is none; absent until a text is wanted.
    std::optional<const LanguageTables::Table *> m_table;
};
