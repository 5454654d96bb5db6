#include "settings/GeneralPane.h"

#include "language/LanguageManager.h"
#include "language/Localized.h"
#include "settings/SettingsCard.h"
#include "settings/SettingsLabel.h"
#include "settings/SettingsSwitch.h"
#include "widgets/PinButtonSetting.h"

#include <QHBoxLayout>

#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array kLanguages{AppLanguage::System, AppLanguage::English, AppLanguage::Chinese};

} // namespace

GeneralPane::GeneralPane(const SystemColors &colors, SettingsPicker::LookSource look,
                         LanguageManager &languages, UserDefaults &defaults, QWidget *parent)
    : SettingsPaneView(colors, parent)
    , m_languages(languages)
    , m_defaults(defaults)
{
    SettingsCard *card = addCard();
    buildLanguageRow(*card, std::move(look));
    buildPinButtonRow(*card);
}

void GeneralPane::refreshLanguage()
{
    QStringList names;
    for (const AppLanguage language : kLanguages)
        names += displayName(language);
    m_languagePicker->setOptions(names);
    const auto current = std::ranges::find(kLanguages, m_languages.currentLanguage());
    m_languagePicker->setCurrentIndex(int(current - kLanguages.begin()));

    m_languageName->setText(localized(u"settings.language.title"_s, u"Language"_s));
    m_languagePicker->setAccessibleName(m_languageName->text());
    m_pinButtonName->setText(localized(u"settings.show_pin_button"_s, u"Show Pin Button"_s));
    m_pinButtonSwitch->setAccessibleName(m_pinButtonName->text());
}

void GeneralPane::buildLanguageRow(SettingsCard &card, SettingsPicker::LookSource look)
{
    m_languageName = card.makeName();
    m_languagePicker = new SettingsPicker(colors(), std::move(look), this);
    m_languagePicker->setObjectName(u"languagePicker"_s);
    card.addRow(m_languageName)->addWidget(m_languagePicker);
    connect(m_languagePicker, &SettingsPicker::chosen, this,
            [this](int index) { m_languages.setLanguage(kLanguages.at(size_t(index))); });
}

void GeneralPane::buildPinButtonRow(SettingsCard &card)
{
    m_pinButtonName = card.makeName();
    m_pinButtonSwitch = new SettingsSwitch(colors(), this);
    m_pinButtonSwitch->setObjectName(u"pinButtonSwitch"_s);
    m_pinButtonSwitch->setChecked(isPinButtonWanted(m_defaults));
    card.addRow(m_pinButtonName)->addWidget(m_pinButtonSwitch);
    connect(m_pinButtonSwitch, &SettingsSwitch::toggled, this, [this](bool isWanted) {
        setPinButtonWanted(m_defaults, isWanted);
        emit pinButtonVisibilityChanged();
    });
}
