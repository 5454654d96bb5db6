#include "platform/Workspace.h"

#include <QScreen>

QRect Workspace::availableGeometry(const QScreen &screen) const
{
    return screen.availableGeometry();
}
