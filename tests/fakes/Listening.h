#pragma once

#include <QAccessible>

#include <private/qguiapplication_p.h>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>

/// As if a screen reader had come, or gone. The toolkit offers no other way on a platform that has
/// none.
inline void setListening(bool isListening)
{
    QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(isListening);
}
