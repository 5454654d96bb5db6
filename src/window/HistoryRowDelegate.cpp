#include "window/HistoryRowDelegate.h"

#include "appearance/DevicePixels.h"
#include "appearance/EvenDigits.h"
#include "appearance/InterfaceFont.h"
#include "appearance/RoundedBox.h"
#include "appearance/SymbolImage.h"
#include "language/Localized.h"
#include "window/HistoryListModel.h"
#include "window/HistoryRow.h"
#include "window/RowIcon.h"
#include "window/RowLayout.h"
#include "window/RowPictures.h"
#include "window/RowThumbnail.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QPainter>
#include <QStyleOptionViewItem>
#include <QToolTip>

using namespace Qt::StringLiterals;

namespace {

constexpr int kContentSize = 14;
constexpr int kMetaSize = 10;
constexpr qreal kTimeSize = 11;
constexpr qreal kLeastTimeSize = 6;
constexpr qreal kTimeSizeStep = 0.5;
constexpr int kTypeSymbolSize = 24;
constexpr int kStarSize = 15;
constexpr qreal kVeilAlpha = 0.05;
constexpr qreal kStarHoverAlpha = 0.05;
constexpr qreal kStarPressedAlpha = 0.08;
constexpr qreal kThumbnailLineAlpha = 0.14;

struct TintedSymbol
{
    Symbol symbol;
    QColor color;
};

TintedSymbol typeSymbol(const ClipboardItem &item, const SystemColors &colors)
{
    switch (item.contentType) {
    case ClipboardContentType::Text:
        return {{u"doc.text"_s, kTypeSymbolSize}, colors.secondaryLabelColor};
    case ClipboardContentType::Image:
        return {{u"photo"_s, kTypeSymbolSize}, colors.systemBlueColor};
    case ClipboardContentType::File:
        return {{u"doc"_s, kTypeSymbolSize}, colors.secondaryLabelColor};
    case ClipboardContentType::Url:
        return {{u"link"_s, kTypeSymbolSize}, colors.systemBlueColor};
    case ClipboardContentType::Mixed:
        return {{u"doc.on.doc"_s, kTypeSymbolSize}, colors.systemPurpleColor};
    }
    return {};
}

void scaleAbout(QPainter &painter, const QPointF &centre, qreal scale)
{
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.translate(centre);
    painter.scale(scale, scale);
    painter.translate(-centre);
}

void drawClipped(QPainter &painter, const QRectF &clip, const QRectF &box, const QString &text)
{
    painter.save();
    painter.setClipRect(clip, Qt::IntersectClip);
    drawElided(painter, box, text);
    painter.restore();
}

/// Where people want texts larger, the time grows as far as its column has room.
QFont timeFont(QPaintDevice &device, const QString &text, qreal room)
{
    for (qreal size = kTimeSize;; size -= kTimeSizeStep) {
        const QFont font = interfaceFont(size);
        const bool fits = widthWithEvenDigits(QFontMetricsF(font, &device), text) <= room;
        if (fits || size <= kLeastTimeSize)
            return font;
    }
}

const ClipboardItemPointer &itemAt(const QModelIndex &index)
{
    return static_cast<const HistoryListModel &>(*index.model()).items().at(index.row());
}

} // namespace

HistoryRowDelegate::HistoryRowDelegate(HistoryRowCache &rows, RowPictures &pictures,
                                       qreal selectionRadius, QObject *parent)
    : QAbstractItemDelegate(parent)
    , m_rows(rows)
    , m_pictures(pictures)
    , m_selectionRadius(selectionRadius)
{
}

void HistoryRowDelegate::paintVeil(QPainter &painter, const QRect &row) const
{
    fillRoundedBox(painter, RowLayout(row).selection, m_selectionRadius,
                   withAlpha(m_colors.labelColor, kVeilAlpha));
}

void HistoryRowDelegate::paintRow(QPainter &painter, const QRect &box,
                                  const ClipboardItemPointer &item, const RowState &state) const
{
    const RowLayout layout{QRectF(box)};
    const SystemColors colors = state.isSelected ? m_colors.onSelection() : m_colors;

    painter.save();
    // Marks may be heaped on a letter as high as anybody likes.
    painter.setClipRect(box, Qt::IntersectClip);
    painter.setRenderHint(QPainter::Antialiasing);
    if (state.groundOpacity > 0)
        paintSelection(painter, layout.selection, state.groundOpacity);
    paintIcon(painter, layout.icon, *item, colors, state.isSelected);
    paintBadge(painter, layout.badge, *item);
    paintTexts(painter, layout, m_rows.row(item), colors);
    paintStar(painter, layout.star, *item, colors, state);
    painter.restore();
}

void HistoryRowDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                               const QModelIndex &index) const
{
    const bool isSelected = option.state & QStyle::State_Selected;
    paintRow(*painter, option.rect, itemAt(index),
             {.isSelected = isSelected, .groundOpacity = isSelected ? 1.0 : 0.0});
}

QSize HistoryRowDelegate::sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const
{
    return {0, kRowHeight};
}

bool HistoryRowDelegate::helpEvent(QHelpEvent *event, QAbstractItemView *view,
                                   const QStyleOptionViewItem &option, const QModelIndex &index)
{
    const QRect star = RowLayout(QRectF(option.rect)).star.toAlignedRect();
    if (!index.isValid() || !star.contains(event->pos())) {
        QToolTip::hideText();
        return false;
    }
    const QString text = itemAt(index)->isFavorite
        ? localized(u"menu.unfavorite"_s, u"Unfavorite"_s)
        : localized(u"menu.favorite"_s, u"Favorite"_s);
    QToolTip::showText(event->globalPos(), text, view->viewport(), star);
    return true;
}

void HistoryRowDelegate::paintSelection(QPainter &painter, const QRectF &box, qreal opacity) const
{
    const qreal rowOpacity = painter.opacity();
    painter.setOpacity(rowOpacity * opacity);
    fillRoundedBox(painter, box, m_selectionRadius, m_colors.selectionColor);
    lineRoundedBox(painter, box, m_selectionRadius, m_colors.selectionLineColor,
                   m_colors.isHighContrast ? kStrongLine : kThinnestLine);
    painter.setOpacity(rowOpacity);
}

void HistoryRowDelegate::paintIcon(QPainter &painter, const QRectF &box, const ClipboardItem &item,
                                   const SystemColors &colors, bool isSelected) const
{
    const QImage picture = m_pictures.content(item, deviceScale(painter));
    if (!picture.isNull() && item.contentType == ClipboardContentType::Image) {
        drawRowThumbnail(painter, box, picture, withAlpha(colors.labelColor, kThumbnailLineAlpha));
        return;
    }
    if (!picture.isNull()) {
        drawRowIcon(painter, box, picture);
        return;
    }
    const TintedSymbol type = typeSymbol(item, colors);
    drawSymbol(painter, box, type.symbol, isSelected ? colors.labelColor : type.color);
}

void HistoryRowDelegate::paintBadge(QPainter &painter, const QRectF &box,
                                    const ClipboardItem &item) const
{
    const QImage icon = m_pictures.source(item, deviceScale(painter));
    if (!icon.isNull())
        drawSourceBadge(painter, box, icon, m_colors.windowBackgroundColor);
}

void HistoryRowDelegate::paintTexts(QPainter &painter, const RowLayout &layout,
                                    const HistoryRow &row, const SystemColors &colors) const
{
    // Marks heaped on the letters of one line do not reach into the other. The two meet by a unit,
    // which large letters need.
    QRectF upper = layout.selection;
    upper.setBottom(layout.meta.top());
    QRectF lower = layout.selection;
    lower.setTop(upper.bottom() - 1);
    painter.setFont(interfaceFont(kContentSize));
    painter.setPen(row.isPlaceholder ? colors.secondaryLabelColor : colors.labelColor);
    drawClipped(painter, upper, layout.content, row.content);
    painter.setPen(colors.tertiaryLabelColor);
    painter.setFont(interfaceFont(kMetaSize, QFont::DemiBold));
    drawClipped(painter, lower, layout.meta, row.meta);
    painter.setFont(timeFont(*painter.device(), row.time, layout.time.width()));
    drawWithEvenDigits(painter, layout.time, row.time);
}

void HistoryRowDelegate::paintStar(QPainter &painter, const QRectF &box, const ClipboardItem &item,
                                   const SystemColors &colors, const RowState &state) const
{
    const bool isAtRest = state.star == RowState::Star::Rest;
    const QString name = item.isFavorite ? u"star.fill"_s : u"star"_s;
    QColor color = item.isFavorite ? colors.controlAccentColor : colors.tertiaryLabelColor;
    if (!item.isFavorite && !isAtRest)
        color = colors.secondaryLabelColor;
    const QPixmap star = symbolPixmap({name, kStarSize, SymbolWeight::Medium}, color,
                                      deviceScale(painter));
    // Where it is at rest: it grows about its centre and is not put on whole pixels meanwhile.
    const QPointF corner = centredOnDevice(painter, box, star.deviceIndependentSize());
    if (state.starScale != 1)
        scaleAbout(painter, box.center(), state.starScale);
    if (!isAtRest) {
        const bool isPressed = state.star == RowState::Star::Pressed;
        painter.setPen(Qt::NoPen);
        painter.setBrush(
            withAlpha(colors.labelColor, isPressed ? kStarPressedAlpha : kStarHoverAlpha));
        painter.drawEllipse(box);
    }
    painter.drawPixmap(corner, star);
}
