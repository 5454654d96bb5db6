#include "window/FavoriteLimitHintOverlayView.h"

#include "appearance/InterfaceFont.h"
#include "appearance/RoundedBox.h"
#include "widgets/AccessibleFactory.h"

#include <QBitmap>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr int kBubbleHeight = 34;
constexpr int kHorizontalPadding = 16;
constexpr int kMinBubbleWidth = 100;
constexpr int kMaxBubbleWidth = 220;
constexpr int kShadowPadding = 20;
constexpr int kTextSize = 13;
constexpr qreal kPlainRadius = 8;
constexpr int kShadowReach = 12;
constexpr qreal kShadowSoftness = 4;
constexpr qreal kShadowDrop = 2;

QFont hintFont()
{
    return interfaceFont(kTextSize, QFont::Medium);
}

QSize bubbleSize(const QString &message)
{
    const qreal text = std::ceil(QFontMetricsF(hintFont()).horizontalAdvance(message));
    return {std::clamp(int(text) + 2 * kHorizontalPadding, kMinBubbleWidth, kMaxBubbleWidth),
            kBubbleHeight};
}

/// How much of a wide shadow is seen \a distance outside the edge that casts it.
qreal shadowAt(qreal distance)
{
    return (1 - std::erf(distance / (kShadowSoftness * std::sqrt(2.0)))) / 2;
}

} // namespace

FavoriteLimitHintOverlayView::FavoriteLimitHintOverlayView(const QString &message,
                                                           const Look &look)
    : QWidget(nullptr,
              Qt::ToolTip | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint
                  | Qt::WindowTransparentForInput | Qt::WindowDoesNotAcceptFocus)
    , m_message(message)
    , m_isTranslucent(look.isTranslucent)
    , m_colors(look.colors())
{
    setObjectName(QStringLiteral("favoriteLimitHint"));
    installAccessible<FavoriteLimitHintOverlayView, RoleAccessible<QAccessible::ToolTip>>();
    setAccessibleName(message);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_TranslucentBackground, m_isTranslucent);
    const int room = m_isTranslucent ? 2 * kShadowPadding : 0;
    resize(bubbleSize(message) + QSize(room, room));
}

void FavoriteLimitHintOverlayView::setColors(const SystemColors &colors)
{
    m_colors = colors;
    m_picture = {};
    update();
}

void FavoriteLimitHintOverlayView::setPose(const Pose &pose)
{
    if (!m_isTranslucent)
        return;
    m_pose = pose;
    update();
}

QRect FavoriteLimitHintOverlayView::bubble() const
{
    const int room = m_isTranslucent ? kShadowPadding : 0;
    return rect().adjusted(room, room, -room, -room);
}

void FavoriteLimitHintOverlayView::paintEvent(QPaintEvent *)
{
    if (m_picture.isNull())
        m_picture = picture();
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setOpacity(m_pose.opacity);
    const QPointF centre = QRectF(rect()).center();
    painter.translate(centre + QPointF(m_pose.shift, 0));
    painter.scale(m_pose.scale, m_pose.scale);
    painter.translate(-centre);
    painter.drawPixmap(0, 0, m_picture);
}

void FavoriteLimitHintOverlayView::resizeEvent(QResizeEvent *)
{
    m_picture = {};
    if (m_isTranslucent)
        return;
    QBitmap shape(size());
    shape.fill(Qt::color0);
    QPainter painter(&shape);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::color1);
    painter.drawRoundedRect(rect(), kPlainRadius, kPlainRadius);
    painter.end();
    setMask(shape);
}

void FavoriteLimitHintOverlayView::paintBubble(QPainter &painter) const
{
    const QRectF card = bubble();
    const qreal radius = m_isTranslucent ? card.height() / 2 : kPlainRadius;
    fillRoundedBox(painter, card, radius, m_colors.hintFillColor);
    lineRoundedBox(painter, card, radius, m_colors.hintLineColor);
    painter.setPen(m_colors.hintTextColor);
    painter.setFont(hintFont());
    const QRectF box = card.adjusted(kHorizontalPadding, 0, -kHorizontalPadding, 0);
    drawElided(painter, box, m_message, Qt::AlignHCenter);
}

/// Laid on in thin sheets, since the shadow of so small a thing has its round ends.
void FavoriteLimitHintOverlayView::paintShadow(QPainter &painter) const
{
    painter.setPen(Qt::NoPen);
    const QRectF card = QRectF(bubble()).translated(0, kShadowDrop);
    for (int grown = kShadowReach; grown >= -kShadowReach; --grown) {
        const qreal share = shadowAt(grown) - shadowAt(grown + 1);
        const QRectF sheet = card.adjusted(-grown, -grown, grown, grown);
        painter.setBrush(withAlpha(m_colors.hintShadowColor, share));
        painter.drawRoundedRect(sheet, sheet.height() / 2, sheet.height() / 2);
    }
}

QPixmap FavoriteLimitHintOverlayView::picture() const
{
    QPixmap picture(size() * devicePixelRatioF());
    picture.setDevicePixelRatio(devicePixelRatioF());
    picture.fill(m_isTranslucent ? QColor(Qt::transparent) : m_colors.windowBackgroundColor);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_isTranslucent)
        paintShadow(painter);
    paintBubble(painter);
    return picture;
}
