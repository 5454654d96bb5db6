#include "settings/SidebarItem.h"

#include "appearance/InterfaceFont.h"
#include "appearance/RoundedBox.h"
#include "appearance/SymbolImage.h"
#include "settings/SettingsMetrics.h"
#include "widgets/ControlMetrics.h"

#include <QPainter>

using namespace ControlMetrics;
using namespace SettingsMetrics;

namespace {

constexpr qreal kRadius = 8;
constexpr int kSymbolSize = 14;
constexpr QRect kSymbolBox(10, 0, 17, SidebarItem::kHeight);
constexpr int kTextLeft = 36;
constexpr qreal kHoverAlpha = 0.05;

} // namespace

SidebarItem::SidebarItem(const SystemColors &colors, const QString &symbol, QWidget *parent)
    : DrawnControl(colors, parent)
    , m_symbol(symbol)
{
    setCheckable(true);
    // The list is one stop of the Tab key, in which the arrow keys go from pane to pane.
    setAutoExclusive(true);
}

qreal SidebarItem::radius() const
{
    return kRadius;
}

void SidebarItem::draw(QPainter &painter) const
{
    QColor ground = Qt::transparent;
    if (isChecked())
        ground = colors().accentFillColor;
    else if (underMouse())
        ground = withAlpha(colors().labelColor, kHoverAlpha);
    fillRoundedBox(painter, rect(), kRadius, ground);

    drawSymbol(painter, kSymbolBox, {m_symbol, kSymbolSize, SymbolWeight::Medium},
               isChecked() ? QColor(Qt::white) : colors().secondaryLabelColor);
    painter.setFont(interfaceFont(kControlFontSize, isChecked() ? QFont::Medium : QFont::Normal));
    painter.setPen(isChecked() ? QColor(Qt::white) : colors().labelColor);
    drawTextLine(painter, rect().adjusted(kTextLeft, 0, 0, 0), text());
}
