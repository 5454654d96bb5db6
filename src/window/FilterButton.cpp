#include "window/FilterButton.h"

#include "appearance/InterfaceFont.h"
#include "appearance/RoundedBox.h"
#include "widgets/AccessibleFactory.h"
#include "window/FilterButtonAccessible.h"

#include <QMouseEvent>
#include <QPainter>

#include <cmath>

namespace {

constexpr int kTitleSize = 12;
constexpr int kPadding = 12;
constexpr qreal kHoverAlpha = 0.05;
constexpr qreal kPressedAlpha = 0.84;
constexpr qreal kDisabledAlpha = 0.4;
constexpr qreal kSelectedLineAlpha = 0.9;

QFont titleFont()
{
    return interfaceFont(kTitleSize, QFont::Medium);
}

} // namespace

FilterButton::FilterButton(const std::optional<FilterCategory> &category, QWidget *parent)
    : QAbstractButton(parent)
    , m_filterCategory(category)
{
    installAccessible<FilterButton, FilterButtonAccessible>();
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::NoFocus);
}

void FilterButton::setTitle(const QString &title)
{
    setText(title);
    setShortcut({}); // An ampersand in the name of a tag is no access key.
    setAccessibleName(title);
}

void FilterButton::setColors(const SystemColors &colors)
{
    m_colors = colors;
    update();
}

void FilterButton::setSelected(bool isSelected)
{
    if (isSelected == m_isSelected)
        return;
    m_isSelected = isSelected;
    FilterButtonAccessible::tellSelection(*this);
    update();
}

int FilterButton::naturalWidth(const QString &title)
{
    return int(std::ceil(QFontMetricsF(titleFont()).horizontalAdvance(title))) + 2 * kPadding;
}

void FilterButton::focusInEvent(QFocusEvent *event)
{
    QAbstractButton::focusInEvent(event);
    emit focusChanged();
}

void FilterButton::focusOutEvent(QFocusEvent *event)
{
    QAbstractButton::focusOutEvent(event);
    emit focusChanged();
}

void FilterButton::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter: click(); break;
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down: event->ignore(); break; // Where the focus goes is the bar's decision.
    default: QAbstractButton::keyPressEvent(event);
    }
}

void FilterButton::mouseReleaseEvent(QMouseEvent *event)
{
    m_releasePosition = event->globalPosition().toPoint();
    QAbstractButton::mouseReleaseEvent(event);
    m_releasePosition.reset();
}

void FilterButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setOpacity(alpha());
    const qreal radius = height() / 2.0;
    fillRoundedBox(painter, rect(), radius, groundColor());
    lineRoundedBox(painter, rect(), radius, borderColor());

    painter.setFont(titleFont());
    painter.setPen(titleColor());
    drawElided(painter, QRectF(rect()).adjusted(kPadding, 0, 1 - kPadding, 0), text());
}

qreal FilterButton::alpha() const
{
    if (!isEnabled())
        return kDisabledAlpha;
    return isDown() ? kPressedAlpha : 1;
}

QColor FilterButton::groundColor() const
{
    if (m_isSelected)
        return m_colors.accentFillColor;
    const bool isHovered = isEnabled() && underMouse();
    return isHovered ? withAlpha(m_colors.labelColor, kHoverAlpha) : QColor(Qt::transparent);
}

QColor FilterButton::borderColor() const
{
    return m_isSelected ? withAlpha(m_colors.accentFillColor, kSelectedLineAlpha)
                        : m_colors.pillLineColor;
}

QColor FilterButton::titleColor() const
{
    return m_isSelected ? QColor(Qt::white) : m_colors.secondaryLabelColor;
}
