#include "settings/HotkeyRecorder.h"

#include "platform/GlobalHotkey.h"
#include "settings/HotkeySettingsManager.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QKeySequence>
#include <QPointer>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// Keys that change what others mean; there are more of them than Qt has names for.
bool isModifierOrLock(int key)
{
    switch (key) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
    case Qt::Key_Hyper_L:
    case Qt::Key_Hyper_R:
    case Qt::Key_Mode_switch:
    case Qt::Key_Multi_key:
    case Qt::Key_CapsLock:
    case Qt::Key_NumLock:
    case Qt::Key_ScrollLock:
    case Qt::Key_unknown:
    case 0: return true;
    default: return false;
    }
}

/// What the key types, whatever modifiers but Shift are held; empty for keys that type nothing that
/// can be seen.
QString charactersIgnoringModifiers(const QKeyEvent &press)
{
    const QString text = press.text();
    const bool canBeSeen = std::ranges::all_of(
        text, [](QChar c) { return c.isSurrogate() || (c.isPrint() && !c.isSpace()); });
    if (canBeSeen && !text.isEmpty())
        return text;
    // Ctrl makes a control character of many letters.
    const int key = press.key();
    return key > Qt::Key_Space && key < Qt::Key_Escape ? QString(QChar(key)) : QString();
}

bool isOfLatinKeyboard(const QString &characters)
{
    const QChar::Script script = characters.front().script();
    return script == QChar::Script_Latin || script == QChar::Script_Common;
}

} // namespace

void HotkeyRecorder::startRecording()
{
    if (std::exchange(m_isRecording, true))
        return;
    QCoreApplication::instance()->installEventFilter(this);
    emit isRecordingChanged(true);
}

void HotkeyRecorder::stopRecording()
{
    if (!std::exchange(m_isRecording, false))
        return;
    QCoreApplication::instance()->removeEventFilter(this);
    emit isRecordingChanged(false);
}

bool HotkeyRecorder::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        event->accept(); // Else a shortcut of the window would get the key before us.
        return true;
    }
    if (event->type() != QEvent::KeyPress)
        return false;
    handleKeyPress(*static_cast<const QKeyEvent *>(event));
    return true;
}

void HotkeyRecorder::handleKeyPress(const QKeyEvent &press)
{
    // The key that pressed the record button may still be held.
    if (press.isAutoRepeat() || isModifierOrLock(press.key()))
        return;
    const QPointer<HotkeyRecorder> self = this;
    if (press.key() != Qt::Key_Escape && onKeyRecorded) {
        const Qt::KeyboardModifiers modifiers = press.modifiers();
        const auto report = onKeyRecorded; // It may delete us, and with us itself.
        report(keyName(press), modifiers.testFlag(Qt::MetaModifier),
               modifiers.testFlag(Qt::ShiftModifier), modifiers.testFlag(Qt::AltModifier),
               modifiers.testFlag(Qt::ControlModifier));
    }
    if (self)
        stopRecording();
}

QString HotkeyRecorder::keyName(const QKeyEvent &press)
{
    const QString characters = charactersIgnoringModifiers(press);
    if (!characters.isEmpty() && isOfLatinKeyboard(characters))
        return characters.toUpper();
    // Blanks and dead keys type nothing that can be seen; and a letter of another script has no
    // name here, while its key has one: that of the letter beside it, or at its place.
    if (const auto keyCode = m_hotkey.findKeyCode(press.nativeScanCode()))
        return HotkeySettingsManager::keyName(*keyCode);
    return characters.isEmpty() ? QKeySequence(press.key()).toString() : characters.toUpper();
}
