#pragma once

#include "settings/HotkeyChoice.h"
#include "settings/HotkeyRecorder.h"
#include "settings/HotkeySettings.h"
#include "settings/SettingsPaneView.h"
#include "settings/SettingsPicker.h"

#include <array>

class GlobalHotkey;
class HotkeySettingsManager;
class KeyCapsView;
class PushButton;

/// The combination that opens the history, and the ways to choose another.
class ShortcutsPane : public SettingsPaneView
{
    Q_OBJECT

public:
    ShortcutsPane(const SystemColors &colors, SettingsPicker::LookSource look,
                  HotkeySettingsManager &manager, GlobalHotkey &hotkey, QWidget *parent);

    void refreshLanguage() override;
    void refresh() override;

protected:
    bool event(QEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    /// One of the modifiers: where it is in the choice, and how it is shown.
    struct Modifier
    {
        bool HotkeyChoice::*isEnabled;
        PushButton *toggle = nullptr;
    };

    void buildCurrentRow(SettingsCard &card);
    void buildModifiersRow(SettingsCard &card);
    void buildKeyRow(SettingsCard &card, SettingsPicker::LookSource look);
    void buildRecordRow(SettingsCard &card);
    void buildInstructions();
    void change(const HotkeyChoice &choice);
    void showChoice();
    void showCurrent(const HotkeySettings &settings);
    void showRecording(bool isRecording);

    HotkeySettingsManager &m_manager;
    GlobalHotkey &m_hotkey;
    HotkeyRecorder m_recorder;
    HotkeyChoice m_choice;
    HotkeySettings m_current;
    std::array<Modifier, 4> m_modifiers;
    SettingsLabel *m_heading = nullptr;
    SettingsLabel *m_currentName = nullptr;
    KeyCapsView *m_currentKeys = nullptr;
    SettingsLabel *m_modifiersName = nullptr;
    SettingsLabel *m_keyName = nullptr;
    SettingsPicker *m_keyPicker = nullptr;
    PushButton *m_recordButton = nullptr;
    SettingsLabel *m_recordingHint = nullptr;
    SettingsLabel *m_refusalNote = nullptr; ///< In the place of the hint.
    SettingsLabel *m_instructionsHeading = nullptr;
    SettingsLabel *m_instruction = nullptr;
};
