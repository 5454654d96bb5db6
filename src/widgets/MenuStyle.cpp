#include "widgets/MenuStyle.h"

#include "appearance/DevicePixels.h"
#include "appearance/Hairline.h"
#include "appearance/InterfaceFont.h"
#include "appearance/RoundedBox.h"
#include "appearance/SymbolImage.h"

#include <QBitmap>
#include <QPainter>
#include <QStyleOption>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr qreal kRadius = 12;
constexpr qreal kPlainRadius = 8;
constexpr int kPadding = 5;
constexpr int kItemHeight = 28;
constexpr qreal kItemRadius = 7;
constexpr int kTextInset = 8; // Within the item, at both ends.
constexpr int kSeparatorHeight = 11;
constexpr int kShortcutSize = 12;
constexpr int kShortcutGap = 24;
constexpr int kCheckColumn = 14;
constexpr int kCheckGap = 7;
constexpr int kCheckSize = 11;
constexpr int kChevronSize = 10;
constexpr int kChevronWidth = 8;
constexpr int kScrollerHeight = 16;
constexpr qreal kDisabledAlpha = 0.55;
constexpr qreal kDarkShadow = 0.5;

/// The title as it is read: the marks of access keys are for keyboards that have them.
QString withoutMnemonics(const QString &title)
{
    QString text;
    for (qsizetype i = 0; i < title.size(); ++i) {
        if (title[i] == u'&' && i + 1 < title.size())
            ++i;
        text += title[i];
    }
    return text;
}

struct ItemTexts
{
    QString title;
    QString shortcut;
};

ItemTexts textsOf(const QStyleOptionMenuItem &option)
{
    const qsizetype tab = option.text.indexOf(u'\t');
    if (tab < 0)
        return {withoutMnemonics(option.text), {}};
    return {withoutMnemonics(option.text.left(tab)), option.text.mid(tab + 1)};
}

int widthOf(const QString &text, int pixelSize)
{
    return int(std::ceil(QFontMetricsF(interfaceFont(pixelSize)).horizontalAdvance(text)));
}

int checkColumn(const QStyleOptionMenuItem &option)
{
    return option.menuHasCheckableItems ? kCheckColumn + kCheckGap : 0;
}

/// What is left of a window whose corners are cut, since nothing below it can shine through.
QRegion plainShape(const QSize &size)
{
    QBitmap bitmap(size);
    bitmap.fill(Qt::color0);
    QPainter painter(&bitmap);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::color1);
    painter.drawRoundedRect(QRect(QPoint(), size), kPlainRadius, kPlainRadius);
    painter.end();
    return QRegion(bitmap);
}

RaisedCard floatingCard(const Look &look)
{
    SoftShadow shadow;
    if (look.scheme == ColorScheme::Dark)
        shadow.strength = kDarkShadow;
    return {kRadius, shadow, look};
}

} // namespace

MenuStyle::MenuStyle()
    : QProxyStyle(u"fusion"_s)
    , m_card(floatingCard(m_look))
{
}

void MenuStyle::setLook(const Look &look)
{
    if (look == m_look)
        return;
    m_look = look;
    m_colors = look.colors();
    m_card = floatingCard(look);
}

QMargins MenuStyle::room() const
{
    return m_look.isTranslucent ? m_card.room() : QMargins();
}

void MenuStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option,
                              QPainter *painter, const QWidget *widget) const
{
    if (element == PE_FrameMenu)
        return;
    if (element != PE_PanelMenu || !widget) {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        return;
    }
    painter->save();
    if (m_look.isTranslucent)
        m_card.draw(*painter, widget->rect().marginsRemoved(widget->contentsMargins()));
    else
        drawPlainCard(*painter, widget->rect());
    painter->restore();
}

void MenuStyle::drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                            const QWidget *widget) const
{
    const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option);
    if (element == CE_MenuItem && item)
        drawItem(*painter, *item);
    else if (element == CE_MenuScroller)
        drawScroller(*painter, *option);
    else if (element != CE_MenuEmptyArea)
        QProxyStyle::drawControl(element, option, painter, widget);
}

int MenuStyle::pixelMetric(PixelMetric metric, const QStyleOption *option,
                           const QWidget *widget) const
{
    switch (metric) {
    case PM_MenuPanelWidth:
    case PM_MenuDesktopFrameWidth: return 0;
    case PM_MenuHMargin:
    case PM_MenuVMargin: return kPadding;
    case PM_MenuScrollerHeight: return kScrollerHeight;
    case PM_SubMenuOverlap: return kPadding + kSubmenuGap;
    default: return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

QSize MenuStyle::sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &size,
                                  const QWidget *widget) const
{
    const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option);
    if (type != CT_MenuItem || !item)
        return QProxyStyle::sizeFromContents(type, option, size, widget);
    if (item->menuItemType == QStyleOptionMenuItem::Separator)
        return {2 * kTextInset, kSeparatorHeight};
    // The menu itself adds the widest shortcut to what is returned, in the font of the titles.
    int width = 2 * kTextInset + checkColumn(*item) + widthOf(textsOf(*item).title, kTitleSize);
    if (item->reservedShortcutWidth > 0)
        width += kShortcutGap;
    else if (item->menuItemType == QStyleOptionMenuItem::SubMenu)
        width += kShortcutGap + kChevronWidth;
    return {width, kItemHeight};
}

int MenuStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                         QStyleHintReturn *returnData) const
{
    switch (hint) {
    case SH_Menu_Mask:
        if (auto *mask = qstyleoption_cast<QStyleHintReturnMask *>(returnData);
            mask && !m_look.isTranslucent) {
            mask->region = plainShape(option->rect.size());
            return 1;
        }
        return 0;
    case SH_Menu_KeyboardSearch:
    case SH_Menu_Scrollable:
    case SH_Menu_MouseTracking:
    case SH_Menu_SloppySubMenus: return 1;
    case SH_Menu_FlashTriggeredItem:
    case SH_Menu_FadeOutOnHide: return 0;
    default: return QProxyStyle::styleHint(hint, option, widget, returnData);
    }
}

/// The corners are cut by the window's shape, which knows no half pixels.
void MenuStyle::drawPlainCard(QPainter &painter, const QRect &card) const
{
    painter.fillRect(card, m_colors.raisedSurfaceColor);
    painter.fillRect(card, m_colors.controlLineColor);
    const qreal line = lineThickness(painter, 1);
    fillRoundedBox(painter, QRectF(card).adjusted(line, line, -line, -line), kPlainRadius - line,
                   m_colors.raisedSurfaceColor);
}

void MenuStyle::drawItem(QPainter &painter, const QStyleOptionMenuItem &option) const
{
    painter.save();
    if (option.menuItemType == QStyleOptionMenuItem::Separator) {
        const QRect line(option.rect.x() + kTextInset, option.rect.y() + kSeparatorHeight / 2,
                         option.rect.width() - 2 * kTextInset, 1);
        drawHairline(painter, line, m_colors.separatorLineColor());
        painter.restore();
        return;
    }
    const bool isEnabled = option.state & State_Enabled;
    const bool isSelected = isEnabled && (option.state & State_Selected);
    if (isSelected)
        fillRoundedBox(painter, option.rect, kItemRadius, m_colors.selectionColor);
    if (!isEnabled)
        painter.setOpacity(kDisabledAlpha);
    drawTexts(painter, option, isSelected ? m_colors.onSelection() : m_colors);
    painter.restore();
}

void MenuStyle::drawTexts(QPainter &painter, const QStyleOptionMenuItem &option,
                          const SystemColors &colors) const
{
    const ItemTexts texts = textsOf(option);
    const QRect inner = option.rect.adjusted(kTextInset, 0, -kTextInset, 0);
    if (option.checked) {
        const QRect column(inner.x(), inner.y(), kCheckColumn, inner.height());
        drawSymbol(painter, column, {u"checkmark"_s, kCheckSize, SymbolWeight::Semibold},
                   colors.labelColor);
    }
    painter.setFont(interfaceFont(kTitleSize));
    painter.setPen(colors.labelColor);
    drawTextLine(painter, inner.adjusted(checkColumn(option), 0, 0, 0), texts.title);
    if (option.menuItemType == QStyleOptionMenuItem::SubMenu) {
        const QRect end(inner.right() + 1 - kChevronWidth, inner.y(), kChevronWidth,
                        inner.height());
        drawSymbol(painter, end, {u"chevron.forward"_s, kChevronSize, SymbolWeight::Semibold},
                   colors.secondaryLabelColor);
    }
    if (!texts.shortcut.isEmpty()) {
        painter.setFont(interfaceFont(kShortcutSize));
        painter.setPen(colors.tertiaryLabelColor);
        drawTextLine(painter, inner, texts.shortcut, Qt::AlignRight);
    }
}

void MenuStyle::drawScroller(QPainter &painter, const QStyleOption &option) const
{
    const bool isDown = option.state & State_DownArrow;
    painter.fillRect(option.rect, m_colors.raisedSurfaceColor); // Items run under it.
    drawSymbol(painter, option.rect,
               {isDown ? u"chevron.down"_s : u"chevron.up"_s, kChevronSize, SymbolWeight::Semibold},
               m_colors.secondaryLabelColor);
}
