#include "settings/ShortcutsPane.h"

#include "language/Localized.h"
#include "platform/GlobalHotkey.h"
#include "settings/HotkeySettingsManager.h"
#include "settings/HotkeyText.h"
#include "settings/KeyCapsView.h"
#include "widgets/PushButton.h"
#include "settings/SettingsCard.h"
#include "settings/SettingsLabel.h"

#include <QHBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr int kHintSize = 12;
constexpr int kHintGap = 4;

} // namespace

ShortcutsPane::ShortcutsPane(const SystemColors &colors, SettingsPicker::LookSource look,
                             HotkeySettingsManager &manager, GlobalHotkey &hotkey, QWidget *parent)
    : SettingsPaneView(colors, parent)
    , m_manager(manager)
    , m_hotkey(hotkey)
    , m_recorder(hotkey)
    , m_modifiers{Modifier{&HotkeyChoice::cmdEnabled}, Modifier{&HotkeyChoice::shiftEnabled},
                  Modifier{&HotkeyChoice::optionEnabled}, Modifier{&HotkeyChoice::controlEnabled}}
{
    m_heading = addHeading();
    SettingsCard *card = addCard();
    buildCurrentRow(*card);
    buildModifiersRow(*card);
    buildKeyRow(*card, std::move(look));
    buildRecordRow(*card);
    buildInstructions();

    const HotkeySettings settings = manager.loadSettings();
    m_choice.takeOver(settings);
    showChoice();
    showCurrent(settings);
    connect(&manager, &HotkeySettingsManager::hotkeySettingsChanged, this,
            &ShortcutsPane::showCurrent);
}

void ShortcutsPane::refreshLanguage()
{
    m_heading->setText(localized(u"settings.hotkey.label"_s, u"Global Hotkey"_s));
    m_currentName->setText(localized(u"settings.current"_s, u"Current:"_s));
    m_modifiersName->setText(localized(u"settings.shortcuts.modifiers"_s, u"Modifiers"_s));
    const std::array names{localized(u"settings.shortcuts.cmd"_s, u"Super"_s),
                           localized(u"settings.shortcuts.shift"_s, u"Shift"_s),
                           localized(u"settings.shortcuts.option"_s, u"Alt"_s),
                           localized(u"settings.shortcuts.control"_s, u"Ctrl"_s)};
    for (size_t i = 0; i < names.size(); ++i)
        m_modifiers[i].toggle->setText(names[i]);
    m_keyName->setText(localized(u"settings.shortcuts.key"_s, u"Key"_s));
    m_keyPicker->setAccessibleName(m_keyName->text());
    m_recordingHint->setText(localized(u"settings.shortcuts.recording_hint"_s,
                                       u"Press a key combination, Esc to cancel"_s));
    m_refusalNote->setText(localized(u"settings.hotkey.refused"_s,
                                     u"Not available: another program may be using it"_s));
    m_instructionsHeading->setText(localized(u"settings.instructions.title"_s, u"Instructions"_s));
    m_instruction->setText(
        localized(u"settings.instruction.3"_s, u"Click Record and press any key"_s));
    m_currentKeys->setKeys(HotkeyText::keyCaps(m_current));
    showRecording(m_recorder.isRecording());
}

void ShortcutsPane::refresh()
{
    m_recordingHint->setVisible(m_recorder.isRecording());
    m_refusalNote->setVisible(!m_recorder.isRecording() && !m_hotkey.isInForce());
}

bool ShortcutsPane::event(QEvent *event)
{
    // What is typed in another window is for that window, also if it is one of ours.
    if (event->type() == QEvent::WindowDeactivate)
        m_recorder.stopRecording();
    return SettingsPaneView::event(event);
}

void ShortcutsPane::hideEvent(QHideEvent *event)
{
    // Nobody would know why keys do nothing.
    m_recorder.stopRecording();
    SettingsPaneView::hideEvent(event);
}

void ShortcutsPane::buildCurrentRow(SettingsCard &card)
{
    m_currentName = card.makeName();
    m_currentKeys = new KeyCapsView(colors(), this);
    m_currentKeys->setObjectName(u"currentKeys"_s);
    card.addRow(m_currentName)->addWidget(m_currentKeys);
}

void ShortcutsPane::buildModifiersRow(SettingsCard &card)
{
    static const std::array objectNames{u"cmdToggle"_s, u"shiftToggle"_s, u"optionToggle"_s,
                                        u"controlToggle"_s};
    m_modifiersName = card.makeName();
    QHBoxLayout *row = card.addRow(m_modifiersName);
    for (size_t i = 0; i < m_modifiers.size(); ++i) {
        Modifier &modifier = m_modifiers[i];
        modifier.toggle = new PushButton(colors(), this);
        modifier.toggle->setObjectName(objectNames[i]);
        modifier.toggle->setCheckable(true);
        row->addWidget(modifier.toggle);
        connect(modifier.toggle, &PushButton::clicked, this,
                [this, member = modifier.isEnabled](bool isEnabled) {
                    HotkeyChoice choice = m_choice;
                    choice.*member = isEnabled;
                    change(choice);
                });
    }
}

void ShortcutsPane::buildKeyRow(SettingsCard &card, SettingsPicker::LookSource look)
{
    m_keyName = card.makeName();
    m_keyPicker = new SettingsPicker(colors(), std::move(look), this);
    m_keyPicker->setObjectName(u"keyPicker"_s);
    m_keyPicker->setOptions(HotkeySettingsManager::keyNames());
    card.addRow(m_keyName)->addWidget(m_keyPicker);
    connect(m_keyPicker, &SettingsPicker::chosen, this, [this](int index) {
        HotkeyChoice choice = m_choice;
        choice.selectedKey = HotkeySettingsManager::keyNames().at(index);
        change(choice);
    });
}

void ShortcutsPane::buildRecordRow(SettingsCard &card)
{
    QHBoxLayout *row = card.addButtonRow();
    m_recordButton = new PushButton(colors(), this);
    m_recordButton->setObjectName(u"recordButton"_s);
    row->addWidget(m_recordButton);
    row->addSpacing(kHintGap);
    const auto addHint = [this, row](const QString &objectName, SettingsLabel::Color color) {
        auto *hint = new SettingsLabel(colors(), {kHintSize}, color, this);
        hint->setObjectName(objectName);
        row->addWidget(hint, 1);
        return hint;
    };
    m_recordingHint = addHint(u"recordingHint"_s, &SystemColors::secondaryLabelColor);
    m_refusalNote = addHint(u"refusalNote"_s, &SystemColors::systemRedColor);
    row->addStretch();
    connect(m_recordButton, &PushButton::clicked, this, [this] {
        if (m_recorder.isRecording())
            m_recorder.stopRecording();
        else
            m_recorder.startRecording();
    });
    connect(&m_recorder, &HotkeyRecorder::isRecordingChanged, this, &ShortcutsPane::showRecording);
    m_recorder.onKeyRecorded = [this](const QString &keyName, bool command, bool shift, bool option,
                                      bool control) {
        change({keyName, command, shift, option, control});
    };
}

void ShortcutsPane::buildInstructions()
{
    m_instructionsHeading = addHeading();
    SettingsCard *card = addCard();
    m_instruction = card->makeName();
    card->addRow(m_instruction);
}

/// Nothing changes where the key cannot be stored.
void ShortcutsPane::change(const HotkeyChoice &choice)
{
    if (choice.apply(m_manager))
        m_choice = choice;
    showChoice();
    refresh();
}

void ShortcutsPane::showChoice()
{
    for (const Modifier &modifier : m_modifiers)
        modifier.toggle->setChecked(m_choice.*modifier.isEnabled);
    m_keyPicker->setCurrentIndex(
        int(HotkeySettingsManager::keyNames().indexOf(m_choice.selectedKey)));
}

void ShortcutsPane::showCurrent(const HotkeySettings &settings)
{
    m_current = settings;
    m_currentKeys->setKeys(HotkeyText::keyCaps(settings));
}

void ShortcutsPane::showRecording(bool isRecording)
{
    m_recordButton->setText(isRecording
                                ? localized(u"settings.button.recording"_s, u"Recording..."_s)
                                : localized(u"settings.button.record"_s, u"Record"_s));
    m_recordButton->setSymbol(isRecording ? u"record.circle.fill"_s : u"record.circle"_s);
    m_recordButton->setAlarming(isRecording);
    refresh();
}
