#include "widgets/DrawnControl.h"

#include "appearance/RoundedBox.h"
#include "widgets/AccessibleFactory.h"
#include "widgets/DrawnControlAccessible.h"

#include <QKeyEvent>
#include <QPainter>

namespace {

constexpr qreal kDisabledOpacity = 0.45;
constexpr float kHoverShare = 0.06F;
constexpr float kPressedShare = 0.14F;

QColor mixed(const QColor &color, const QColor &other, float share)
{
    const auto mix = [share](float a, float b) { return a + (b - a) * share; };
    return QColor::fromRgbF(mix(color.redF(), other.redF()), mix(color.greenF(), other.greenF()),
                            mix(color.blueF(), other.blueF()));
}

} // namespace

DrawnControl::DrawnControl(const SystemColors &colors, QWidget *parent)
    : QAbstractButton(parent)
    , m_colors(colors)
{
    installAccessible<DrawnControl, DrawnControlAccessible>();
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
}

QColor DrawnControl::pressable(const QColor &color) const
{
    if (isDown())
        return mixed(color, m_colors.labelColor, kPressedShare);
    return underMouse() ? mixed(color, m_colors.labelColor, kHoverShare) : color;
}

void DrawnControl::drawGround(QPainter &painter, const QColor &ground, const QColor &line) const
{
    fillRoundedBox(painter, rect(), radius(), ground);
    lineRoundedBox(painter, rect(), radius(), line);
}

void DrawnControl::focusInEvent(QFocusEvent *event)
{
    QAbstractButton::focusInEvent(event);
    const bool wasVisible = isFocusVisible();
    m_focusVisibility.focusIn(event->reason());
    tellFocusVisibility(wasVisible);
}

void DrawnControl::focusOutEvent(QFocusEvent *event)
{
    QAbstractButton::focusOutEvent(event);
    const bool wasVisible = isFocusVisible();
    m_focusVisibility.focusOut();
    tellFocusVisibility(wasVisible);
}

void DrawnControl::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

void DrawnControl::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (!isEnabled())
        painter.setOpacity(kDisabledOpacity);
    draw(painter);
}

void DrawnControl::tellFocusVisibility(bool wasVisible)
{
    if (isFocusVisible() != wasVisible)
        emit focusVisibleChanged(isFocusVisible());
}
