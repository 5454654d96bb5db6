#include "platform/x11/KeysInTurn.h"

#include <QCoreApplication>

#include <qpa/qwindowsysteminterface.h>
#include <xcb/xcb.h>

KeysInTurn::KeysInTurn()
{
    QCoreApplication::instance()->installNativeEventFilter(this);
}

bool KeysInTurn::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *)
{
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto *key = static_cast<const xcb_key_press_event_t *>(message);
    if (key->response_type == XCB_KEY_PRESS)
        QWindowSystemInterface::sendWindowSystemEvents(QEventLoop::AllEvents);
    return false;
}
