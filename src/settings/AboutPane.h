#pragma once

#include "settings/SettingsPaneView.h"

/// What this program is.
class AboutPane : public SettingsPaneView
{
    Q_OBJECT

public:
    AboutPane(const SystemColors &colors, QWidget *parent);

    void refreshLanguage() override;

private:
    void buildHead();
    void buildLicence();

    SettingsLabel *m_appName = nullptr;
    SettingsLabel *m_version = nullptr;
    SettingsLabel *m_licenceName = nullptr;
    SettingsLabel *m_licence = nullptr;
};
