#include "window/PinButton.h"

#include "appearance/RoundedBox.h"
#include "appearance/SymbolImage.h"
#include "language/Localized.h"

#include <QFocusEvent>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace {

constexpr int kSymbolSize = 14;
constexpr qreal kRadius = 8;
constexpr qreal kHoverAlpha = 0.05;
constexpr qreal kPressedAlpha = 0.12;

} // namespace

PinButton::PinButton(QWidget *parent)
    : QAbstractButton(parent)
{
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus);
    setCheckable(true);
    connect(this, &PinButton::toggled, this, &PinButton::refreshLanguage);
    refreshLanguage();
}

void PinButton::setColors(const SystemColors &colors)
{
    m_colors = colors;
    update();
}

void PinButton::refreshLanguage()
{
    const QString pin = localized(u"tooltip.pin"_s, u"Pin window"_s);
    setToolTip(isPinned() ? localized(u"tooltip.unpin"_s, u"Unpin window"_s) : pin);
    // Whether it is pinned is heard as the state; a name that turns around with it would say twice,
    // and the wrong way round, what is said.
    setAccessibleName(pin);
}

void PinButton::focusInEvent(QFocusEvent *event)
{
    QAbstractButton::focusInEvent(event);
    m_focusVisibility.focusIn(event->reason());
    updateRing();
}

void PinButton::focusOutEvent(QFocusEvent *event)
{
    QAbstractButton::focusOutEvent(event);
    m_focusVisibility.focusOut();
    updateRing();
}

void PinButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (isDown() || underMouse()) {
        const qreal alpha = isDown() ? kPressedAlpha : kHoverAlpha;
        fillRoundedBox(painter, rect(), kRadius, withAlpha(m_colors.labelColor, alpha));
    }
    const QString name = isPinned() ? u"pin.slash.fill"_s : u"pin"_s;
    drawSymbol(painter, rect(), {name, kSymbolSize, SymbolWeight::Semibold},
               isPinned() ? m_colors.controlAccentColor : m_colors.secondaryLabelColor);
}

/// It stands outside the button, on the window.
void PinButton::updateRing()
{
    if (parentWidget())
        parentWidget()->update();
}
