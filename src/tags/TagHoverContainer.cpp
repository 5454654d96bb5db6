#include "tags/TagHoverContainer.h"

#include "appearance/FocusOutline.h"
#include "appearance/InterfaceFont.h"
#include "appearance/SymbolImage.h"
#include "language/Localized.h"
#include "tags/Tag.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int kMaxTextWidth = 304 - 32; // So that a chip has room in a line of its own.
constexpr qreal kTextSize = 11.5;
constexpr int kSymbolLead = 6;
constexpr int kSymbolBox = 13;
constexpr int kSymbolGap = 4;
constexpr int kTextTrail = 8;
constexpr int kSymbolSize = 11;
constexpr qreal kRestAlpha = 0.08;
constexpr qreal kHoverAlpha = 0.12;
constexpr qreal kHoverScale = 1.045;
constexpr int kHoverMilliseconds = 120;

} // namespace

TagHoverContainer::TagHoverContainer(const QString &tagText, bool isSelectedTag, QWidget *parent)
    : QAbstractButton(parent)
    , m_tagText(tagText)
{
    setAttribute(Qt::WA_Hover);
    // The row hands the focus on; Tab leaves the row as a whole.
    setFocusPolicy(Qt::NoFocus);
    setCheckable(true);
    setChecked(isSelectedTag);
    // Assistive programs turn it without a click.
    connect(this, &TagHoverContainer::toggled, this, &TagHoverContainer::handleToggle);
    setAccessibleName(shownTagName(tagText));
    setToolTip(localized(u"tooltip.tag.toggle"_s, u"Toggle this tag selection"_s));
    setAccessibleDescription(toolTip());
    resize(buttonWidth(), mainButtonHeight);
    m_hover.setStartValue(1.0);
    m_hover.setEndValue(kHoverScale);
    m_hover.setDuration(kHoverMilliseconds);
    connect(&m_hover, &QVariantAnimation::valueChanged, this,
            [this](const QVariant &value) { setScale(value.toReal()); });
}

int TagHoverContainer::buttonWidth() const
{
    const QFontMetricsF metrics(interfaceFont(kTextSize));
    const int text = int(std::ceil(metrics.horizontalAdvance(shownTagName(m_tagText))));
    return kSymbolLead + kSymbolBox + kSymbolGap + std::min(text, kMaxTextWidth) + kTextTrail;
}

void TagHoverContainer::draw(QPainter &painter, const SystemColors &colors) const
{
    const QRectF chip(0, 0, width(), height());
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(QRectF(geometry()).center());
    painter.scale(m_scale, m_scale);
    painter.translate(-chip.center());
    painter.setPen(Qt::NoPen);
    const qreal groundAlpha = m_isContainerHovering ? kHoverAlpha : kRestAlpha;
    painter.setBrush(withAlpha(colors.labelColor, groundAlpha));
    painter.drawRoundedRect(chip, chip.height() / 2, chip.height() / 2);
    const QString symbol = isSelectedTag() ? u"checkmark.circle.fill"_s : u"circle"_s;
    drawSymbol(painter, QRectF(kSymbolLead, 0, kSymbolBox, chip.height()),
               {symbol, kSymbolSize, SymbolWeight::Regular}, colors.secondaryLabelColor);
    const QRectF text = chip.adjusted(kSymbolLead + kSymbolBox + kSymbolGap, 0, -kTextTrail, 0);
    painter.setFont(interfaceFont(kTextSize));
    painter.setPen(colors.labelColor);
    drawElided(painter, text, shownTagName(m_tagText));
    if (m_isFocusVisible)
        drawFocusOutline(painter, chip, chip.height() / 2, colors.controlAccentColor);
    painter.restore();
}

QRect TagHoverContainer::drawnRect() const
{
    const int beyond = int(std::ceil(width() * (kHoverScale - 1) / 2)) + 1;
    const int room = std::max(kFocusOutlineRoom, beyond);
    return geometry().adjusted(-room, -kFocusOutlineRoom, room, kFocusOutlineRoom);
}

void TagHoverContainer::enterEvent(QEnterEvent *event)
{
    QAbstractButton::enterEvent(event);
    setContainerHovering(true);
}

void TagHoverContainer::focusInEvent(QFocusEvent *event)
{
    QAbstractButton::focusInEvent(event);
    m_isFocusVisible = true;
    updateDrawnRect();
}

void TagHoverContainer::focusOutEvent(QFocusEvent *event)
{
    QAbstractButton::focusOutEvent(event);
    m_isFocusVisible = false;
    updateDrawnRect();
}

void TagHoverContainer::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down: event->ignore(); return; // The row moves the focus.
    case Qt::Key_Return:
    case Qt::Key_Enter: click(); return;
    default: QAbstractButton::keyPressEvent(event);
    }
}

void TagHoverContainer::leaveEvent(QEvent *event)
{
    QAbstractButton::leaveEvent(event);
    setContainerHovering(false);
}

void TagHoverContainer::mousePressEvent(QMouseEvent *event)
{
    // The circle answers to the press, the text to the release.
    if (event->button() == Qt::LeftButton && event->position().x() < circleTapAreaWidth)
        click();
    else if (event->button() == Qt::LeftButton)
        QAbstractButton::mousePressEvent(event);
}

void TagHoverContainer::handleToggle()
{
    updateDrawnRect();
    if (onToggle)
        onToggle(m_tagText);
}

void TagHoverContainer::setContainerHovering(bool isHovering)
{
    if (std::exchange(m_isContainerHovering, isHovering) == isHovering)
        return;
    updateDrawnRect();
    if (!m_isAnimated) {
        setScale(isHovering ? kHoverScale : 1);
        return;
    }
    m_hover.setDirection(isHovering ? QAbstractAnimation::Forward : QAbstractAnimation::Backward);
    if (m_hover.state() != QAbstractAnimation::Running)
        m_hover.start();
}

void TagHoverContainer::setScale(qreal scale)
{
    m_scale = scale;
    updateDrawnRect();
}

void TagHoverContainer::updateDrawnRect()
{
    parentWidget()->update(drawnRect());
}
