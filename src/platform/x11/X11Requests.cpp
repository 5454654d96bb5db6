#include "platform/x11/X11Requests.h"

#include <algorithm>
#include <cstring>
#include <string>

#include <xcb/xcb.h>

namespace {

constexpr quint32 kMaxPropertyWords = 4096;

std::array<std::string, size_t(X11AtomName::Count)> atomNames(int screenNumber)
{
    std::array<std::string, size_t(X11AtomName::Count)> names;
    const auto set = [&names](X11AtomName atom, std::string name) {
        names[size_t(atom)] = std::move(name);
    };
    set(X11AtomName::CompositorSelection, "_NET_WM_CM_S" + std::to_string(screenNumber));
    set(X11AtomName::GtkApplicationId, "_GTK_APPLICATION_ID");
    set(X11AtomName::KdeBlurBehindRegion, "_KDE_NET_WM_BLUR_BEHIND_REGION");
    set(X11AtomName::Manager, "MANAGER");
    set(X11AtomName::NetActiveWindow, "_NET_ACTIVE_WINDOW");
    set(X11AtomName::NetClientList, "_NET_CLIENT_LIST");
    set(X11AtomName::NetCurrentDesktop, "_NET_CURRENT_DESKTOP");
    set(X11AtomName::NetStartupInfo, "_NET_STARTUP_INFO");
    set(X11AtomName::NetStartupInfoBegin, "_NET_STARTUP_INFO_BEGIN");
    set(X11AtomName::NetSupportingWmCheck, "_NET_SUPPORTING_WM_CHECK");
    set(X11AtomName::NetSystemTrayColors, "_NET_SYSTEM_TRAY_COLORS");
    set(X11AtomName::NetSystemTrayOpcode, "_NET_SYSTEM_TRAY_OPCODE");
    set(X11AtomName::NetSystemTrayOrientation, "_NET_SYSTEM_TRAY_ORIENTATION");
    set(X11AtomName::NetSystemTraySelection, "_NET_SYSTEM_TRAY_S" + std::to_string(screenNumber));
    set(X11AtomName::NetSystemTrayVisual, "_NET_SYSTEM_TRAY_VISUAL");
    set(X11AtomName::NetWmDesktop, "_NET_WM_DESKTOP");
    set(X11AtomName::NetWmName, "_NET_WM_NAME");
    set(X11AtomName::NetWmPid, "_NET_WM_PID");
    set(X11AtomName::NetWmState, "_NET_WM_STATE");
    set(X11AtomName::NetWmStateSkipPager, "_NET_WM_STATE_SKIP_PAGER");
    set(X11AtomName::NetWmStateSkipTaskbar, "_NET_WM_STATE_SKIP_TASKBAR");
    set(X11AtomName::NetWmStrut, "_NET_WM_STRUT");
    set(X11AtomName::NetWmStrutPartial, "_NET_WM_STRUT_PARTIAL");
    set(X11AtomName::NetWmUserTime, "_NET_WM_USER_TIME");
    set(X11AtomName::NetWmWindowType, "_NET_WM_WINDOW_TYPE");
    set(X11AtomName::NetWmWindowTypeDock, "_NET_WM_WINDOW_TYPE_DOCK");
    set(X11AtomName::Utf8String, "UTF8_STRING");
    set(X11AtomName::WmState, "WM_STATE");
    set(X11AtomName::XembedInfo, "_XEMBED_INFO");
    set(X11AtomName::XsettingsSelection, "_XSETTINGS_S" + std::to_string(screenNumber));
    set(X11AtomName::XsettingsSettings, "_XSETTINGS_SETTINGS");
    return names;
}

} // namespace

void X11Requests::learn(xcb_connection_t *xcb, quint32 rootWindow, int screenNumber)
{
    m_xcb = xcb;
    m_rootWindow = rootWindow;
    std::array<xcb_intern_atom_cookie_t, size_t(X11AtomName::Count)> cookies{};
    std::ranges::transform(atomNames(screenNumber), cookies.begin(), [xcb](const auto &name) {
        return xcb_intern_atom(xcb, 0, quint16(name.size()), name.c_str());
    });
    for (size_t i = 0; i < m_atoms.size(); ++i) {
        const X11Reply<xcb_intern_atom_reply_t> atom(
            xcb_intern_atom_reply(xcb, cookies[i], nullptr));
        if (atom)
            m_atoms[i] = atom->atom;
    }
}

quint32 X11Requests::requestProperty(quint32 window, quint32 property)
{
    return xcb_get_property(m_xcb, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0,
                            kMaxPropertyWords)
        .sequence;
}

std::optional<QByteArray> X11Requests::takeProperty(quint32 request)
{
    const auto answer = reply(xcb_get_property_reply, xcb_get_property_cookie_t{request});
    if (!answer)
        return std::nullopt;
    return QByteArray(static_cast<const char *>(xcb_get_property_value(answer.get())),
                      xcb_get_property_value_length(answer.get()));
}

QList<quint32> propertyWords(const std::optional<QByteArray> &property)
{
    if (!property)
        return {};
    QList<quint32> words(property->size() / qsizetype(sizeof(quint32)));
    if (!words.isEmpty())
        std::memcpy(words.data(), property->constData(), size_t(words.size()) * sizeof(quint32));
    return words;
}
