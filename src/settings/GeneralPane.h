#pragma once

#include "settings/SettingsPaneView.h"
#include "settings/SettingsPicker.h"

class LanguageManager;
class SettingsSwitch;
class UserDefaults;

/// Language, and what the history window shows.
class GeneralPane : public SettingsPaneView
{
    Q_OBJECT

public:
    GeneralPane(const SystemColors &colors, SettingsPicker::LookSource look,
                LanguageManager &languages, UserDefaults &defaults, QWidget *parent);

    void refreshLanguage() override;

signals:
    void pinButtonVisibilityChanged();

private:
    void buildLanguageRow(SettingsCard &card, SettingsPicker::LookSource look);
    void buildPinButtonRow(SettingsCard &card);

    LanguageManager &m_languages;
    UserDefaults &m_defaults;
    SettingsLabel *m_languageName = nullptr;
    SettingsPicker *m_languagePicker = nullptr;
    SettingsLabel *m_pinButtonName = nullptr;
    SettingsSwitch *m_pinButtonSwitch = nullptr;
};
