#include "settings/KeyCapsView.h"

#include "appearance/InterfaceFont.h"
#include "appearance/RoundedBox.h"

#include <QPainter>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr int kHeight = 22;
constexpr int kPadding = 7;
constexpr int kPlusWidth = 17;
constexpr qreal kRadius = 5;
constexpr qreal kGroundAlpha = 0.08;
constexpr int kFontSize = 12;

QFont keyFont()
{
    return interfaceFont(kFontSize, QFont::Medium);
}

int capWidth(const QString &key)
{
    const int width = int(std::ceil(QFontMetricsF(keyFont()).horizontalAdvance(key)));
    return std::max(kHeight, width + 2 * kPadding);
}

} // namespace

KeyCapsView::KeyCapsView(const SystemColors &colors, QWidget *parent)
    : QWidget(parent)
    , m_colors(colors)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void KeyCapsView::setKeys(const QStringList &keys)
{
    m_keys = keys;
    setAccessibleName(keys.join(u'+'));
    updateGeometry();
    update();
}

QSize KeyCapsView::sizeHint() const
{
    int width = 0;
    for (const QString &key : m_keys)
        width += capWidth(key) + (width > 0 ? kPlusWidth : 0);
    return {width, kHeight};
}

void KeyCapsView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setFont(keyFont());
    int x = 0;
    for (const QString &key : m_keys) {
        if (x > 0) {
            painter.setPen(m_colors.secondaryLabelColor);
            drawTextLine(painter, QRect(x, 0, kPlusWidth, kHeight), u"+"_s, Qt::AlignHCenter);
            x += kPlusWidth;
        }
        const QRect cap(x, 0, capWidth(key), kHeight);
        fillRoundedBox(painter, cap, kRadius, withAlpha(m_colors.labelColor, kGroundAlpha));
        painter.setPen(m_colors.labelColor);
        drawTextLine(painter, cap, key, Qt::AlignHCenter);
        x += cap.width();
    }
}
