#pragma once

#include <QObject>
#include <QString>

#include <functional>

class GlobalHotkey;
class QKeyEvent;

/// Records the next key combination that is pressed in a window of this program. Main thread only.
///
/// While it records, key presses go nowhere else. Repeats of a held key, modifiers alone and lock
/// keys are not what a person means by a combination, and are waited out.
class HotkeyRecorder : public QObject
{
    Q_OBJECT

public:
    /// \a hotkey tells what a key is good for where its letter does not; it must outlive the
    /// recorder.
    explicit HotkeyRecorder(GlobalHotkey &hotkey)
        : m_hotkey(hotkey)
    {
    }

    bool isRecording() const { return m_isRecording; }
    void startRecording();
    void stopRecording();

    /// Called with what was recorded, though not for Escape, which ends the recording too. The name
    /// may be one that cannot be stored. The recorder may be deleted in the call.
    std::function<void(const QString &keyName, bool command, bool shift, bool option, bool control)>
        onKeyRecorded;

signals:
    void isRecordingChanged(bool isRecording);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void handleKeyPress(const QKeyEvent &press);
    QString keyName(const QKeyEvent &press);

    GlobalHotkey &m_hotkey;
    bool m_isRecording = false;
};
