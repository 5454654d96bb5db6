#include "appearance/Easing.h"

#include <QEasingCurve>
#include <QPointF>

namespace {

QEasingCurve bezier(QPointF first, QPointF second)
{
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment(first, second, QPointF(1, 1));
    return curve;
}

} // namespace

qreal steady(qreal progress)
{
    return progress;
}

qreal easeIn(qreal progress)
{
    static const QEasingCurve curve = bezier(QPointF(0.42, 0), QPointF(1, 1));
    return curve.valueForProgress(progress);
}

qreal easeOut(qreal progress)
{
    static const QEasingCurve curve = bezier(QPointF(0, 0), QPointF(0.58, 1));
    return curve.valueForProgress(progress);
}

qreal easeInOut(qreal progress)
{
    static const QEasingCurve curve = bezier(QPointF(0.42, 0), QPointF(0.58, 1));
    return curve.valueForProgress(progress);
}
