#pragma once

#include "platform/PasteKeystroke.h"
#include "platform/x11/PasteChord.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11Keyboard.h"
#include "platform/x11/X11KnownWindows.h"
#include "platform/x11/X11Windows.h"

#include <functional>
#include <optional>
#include <vector>

class DesktopEntries;

/// Presses keys by the XTEST extension.
///
/// The extension has a keyboard of its own beside the person's, and programs see one keyboard made
/// of both. A release by XTEST lifts a key there, while the person's keyboard goes on knowing that
/// it is held; so it can tell, after the chord, what is to be put back. For keys that were
/// themselves pressed by XTEST (remote desktops) nothing can tell; they are put back always.
class X11PasteKeystroke : public PasteKeystroke
{
public:
    /// \a ownPrimary offers what is on the pasteboard as the PRIMARY selection too; false if that
    /// is nothing of ours.
    X11PasteKeystroke(X11Connection &connection, X11Keyboard &keyboard,
                      X11KnownWindows &knownWindows, const DesktopEntries &entries,
                      std::function<bool()> ownPrimary);

    bool isPermitted() const override;
    void requestPermission() override;
    void prepare(const RunningApplication &target) override;
    [[nodiscard]] KeyDown postKeyDown() override;
    [[nodiscard]] bool postKeyUp() override;

private:
    struct Chord
    {
        std::vector<quint8> modifiers;
        quint8 key = 0;
    };
    /// A modifier that was held, and the keyboard on which it was.
    struct LiftedKey
    {
        quint8 key = 0;
        quint8 device = 0;
        bool isFake = false; ///< It was pressed by XTEST.
    };
    struct Device
    {
        quint8 id = 0;
        bool isFake = false;
    };

    Chord findChord(PasteChord chord, int group) const;
    std::optional<quint8> findLetterV(int group) const;

    void pressChord(const Chord &chord, const std::vector<quint8> &heldModifiers);
    std::vector<quint8> heldModifiers() const;
    /// Where \a heldModifiers are held, one for each keyboard on which one is.
    std::vector<LiftedKey> findOnKeyboards(const std::vector<quint8> &heldModifiers) const;
    std::vector<Device> keyboards() const;
    std::vector<QByteArray> heldKeys(const std::vector<quint8> &devices) const;
    void clearStickyModifiers();
    /// Those that are keys of the chord, or those that are not.
    void putBackModifiers(bool areOfChord);
    void restoreStickyModifiers();

    void press(quint8 key);
    void release(quint8 key);
    void fakeKey(int type, quint8 key, quint8 device);

    X11Connection &m_connection;
    X11Keyboard &m_keyboard;
    X11KnownWindows &m_knownWindows;
    const DesktopEntries &m_entries;
    std::function<bool()> m_ownPrimary;
    X11Windows m_windows;

    RunningApplication m_target;
    PasteChord m_wantedChord = PasteChord::ControlV;
    /// The chord would paste what somebody else has selected.
    bool m_wouldPasteOther = false;
    std::optional<Chord> m_pressedChord;
    X11Keyboard::State m_earlierState;
    std::vector<LiftedKey> m_liftedKeys;
};
