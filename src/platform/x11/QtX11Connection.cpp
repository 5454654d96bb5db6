#include "platform/x11/QtX11Connection.h"

#include <QGuiApplication>

xcb_connection_t *qtX11Connection()
{
    const auto *native =
        qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return native ? native->connection() : nullptr;
}
