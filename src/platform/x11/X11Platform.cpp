#include "platform/x11/X11Platform.h"

#include "platform/linux/DesktopEntries.h"
#include "platform/x11/KeysInTurn.h"
#include "platform/x11/X11Appearance.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11GlobalHotkey.h"
#include "platform/x11/X11Keyboard.h"
#include "platform/x11/X11KnownWindows.h"
#include "platform/x11/X11PasteKeystroke.h"
#include "platform/x11/X11Pasteboard.h"
#include "platform/x11/X11PointerMonitor.h"
#include "platform/x11/X11StatusItem.h"
#include "platform/x11/X11Workspace.h"

namespace {

class X11Platform : public Platform
{
public:
    X11Platform(const ImageCodec &codec, Scheduler &scheduler)
        : m_keyboard(m_connection)
        , m_pasteboard(codec)
        , m_knownWindows(m_connection)
        , m_workspace(m_connection, m_knownWindows, m_entries, scheduler)
        , m_globalHotkey(m_connection, m_keyboard)
        , m_pasteKeystroke(m_connection, m_keyboard, m_knownWindows, m_entries,
                           [this] { return m_pasteboard.alsoOwnPrimary(); })
        , m_pointerMonitor(m_connection)
        , m_appearance(m_connection)
        , m_statusItem(m_connection, m_appearance, scheduler)
    {
        m_pointerMonitor.isOwnPlace = [this](const QPoint &place) {
            return m_statusItem.contains(place);
        };
        m_workspace.onOwnWindowActivated
            = [this](quint32 window) { m_globalHotkey.noteActivation(window); };
        m_connection.onLost = [this] {
            if (onLost)
                onLost();
        };
        m_appearance.onPreferenceChanged = [this] { m_statusItem.refreshColorSoon(); };
    }

    Pasteboard &pasteboard() override { return m_pasteboard; }
    Workspace &workspace() override { return m_workspace; }
    GlobalHotkey &globalHotkey() override { return m_globalHotkey; }
    PasteKeystroke &pasteKeystroke() override { return m_pasteKeystroke; }
    PointerMonitor &pointerMonitor() override { return m_pointerMonitor; }
    DesktopAppearance &appearance() override { return m_appearance; }
    StatusItem &statusItem() override { return m_statusItem; }

private:
    KeysInTurn m_keysInTurn;
    X11Connection m_connection;
    DesktopEntries m_entries;
    X11Keyboard m_keyboard;
    X11Pasteboard m_pasteboard;
    X11KnownWindows m_knownWindows;
    X11Workspace m_workspace;
    X11GlobalHotkey m_globalHotkey;
    X11PasteKeystroke m_pasteKeystroke;
    X11PointerMonitor m_pointerMonitor;
    X11Appearance m_appearance;
    X11StatusItem m_statusItem;
};

} // namespace

std::unique_ptr<Platform> makeX11Platform(const ImageCodec &codec, Scheduler &scheduler)
{
    return std::make_unique<X11Platform>(codec, scheduler);
}
