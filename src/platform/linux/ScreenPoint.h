#pragma once

#include <QPoint>

/// A place on the screen, given in the screen's own pixels, as Qt counts it.
QPoint deviceIndependent(const QPoint &native);
