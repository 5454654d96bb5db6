#include "settings/HistoryStepButton.h"

#include "appearance/RoundedBox.h"
#include "appearance/SymbolImage.h"

#include <QPainter>

namespace {

constexpr QSize kSize(28, 26);
constexpr qreal kRadius = 7;
constexpr int kSymbolSize = 13;
constexpr qreal kHoverAlpha = 0.05;
constexpr qreal kPressedAlpha = 0.12;

} // namespace

HistoryStepButton::HistoryStepButton(const SystemColors &colors, const QString &symbol,
                                     QWidget *parent)
    : DrawnControl(colors, parent)
    , m_symbol(symbol)
{
}

QSize HistoryStepButton::sizeHint() const
{
    return kSize;
}

qreal HistoryStepButton::radius() const
{
    return kRadius;
}

void HistoryStepButton::draw(QPainter &painter) const
{
    if (isEnabled() && (isDown() || underMouse()))
        fillRoundedBox(painter, rect(), kRadius,
                       withAlpha(colors().labelColor, isDown() ? kPressedAlpha : kHoverAlpha));
    drawSymbol(painter, rect(), {m_symbol, kSymbolSize, SymbolWeight::Semibold},
               colors().secondaryLabelColor);
}
