#include "platform/linux/ScreenPoint.h"

#include <QGuiApplication>
#include <QScreen>

QPoint deviceIndependent(const QPoint &native)
{
    // Qt scales each screen about its own corner, which stays where it is.
    for (const QScreen *screen : QGuiApplication::screens()) {
        const QPoint corner = screen->geometry().topLeft();
        const QRect nativeGeometry(corner, screen->size() * screen->devicePixelRatio());
        if (nativeGeometry.contains(native))
            return corner + (native - corner) / screen->devicePixelRatio();
    }
    return native;
}
