#include "platform/x11/FocusBeforeKeys.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QWindow>

#include <qpa/qwindowsysteminterface.h>
#include <xcb/xcb.h>

FocusBeforeKeys::FocusBeforeKeys()
{
    QCoreApplication::instance()->installNativeEventFilter(this);
}

bool FocusBeforeKeys::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *)
{
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto *key = static_cast<const xcb_key_press_event_t *>(message);
    if (key->response_type != XCB_KEY_PRESS)
        return false;
    const QWindow *focus = QGuiApplication::focusWindow();
    if (!focus || focus->winId() != key->event)
        QWindowSystemInterface::sendWindowSystemEvents(QEventLoop::AllEvents);
    return false;
}
