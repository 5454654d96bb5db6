#include "settings/SettingsPicker.h"

#include "appearance/InterfaceFont.h"
#include "appearance/SymbolImage.h"
#include "settings/SettingsMetrics.h"
#include "widgets/ControlMetrics.h"

#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QStyle>

#include <cmath>

using namespace ControlMetrics;
using namespace SettingsMetrics;
using namespace Qt::StringLiterals;

namespace {

constexpr int kPadding = 11;
constexpr int kArrowGap = 12;
constexpr int kArrowWidth = 8;
constexpr int kArrowSize = 8;
constexpr int kArrowRise = 3; // Of either arrow from the middle.

} // namespace

SettingsPicker::SettingsPicker(const SystemColors &colors, LookSource look, QWidget *parent)
    : DrawnControl(colors, parent)
    , m_look(std::move(look))
{
    connect(this, &SettingsPicker::clicked, this, &SettingsPicker::openMenu);
}

void SettingsPicker::setOptions(const QStringList &options)
{
    m_options = options;
    setText(options.value(m_currentIndex));
    updateGeometry();
}

void SettingsPicker::setCurrentIndex(int index)
{
    m_currentIndex = index;
    setText(m_options.value(index));
    updateGeometry();
}

QSize SettingsPicker::sizeHint() const
{
    const QFontMetricsF metrics(interfaceFont(kControlFontSize));
    const int width = int(std::ceil(metrics.horizontalAdvance(text())));
    return {2 * kPadding + width + kArrowGap + kArrowWidth, kControlHeight};
}

qreal SettingsPicker::radius() const
{
    return kControlRadius;
}

void SettingsPicker::draw(QPainter &painter) const
{
    drawGround(painter, pressable(colors().controlColor), colors().controlLineColor);
    painter.setFont(interfaceFont(kControlFontSize));
    painter.setPen(colors().labelColor);
    drawTextLine(painter, rect().adjusted(kPadding, 0, -kPadding, 0), text());
    const QRect arrows(width() - kPadding - kArrowWidth, 0, kArrowWidth, height());
    for (const bool isUp : {true, false}) {
        drawSymbol(painter, arrows.translated(0, isUp ? -kArrowRise : kArrowRise),
                   {isUp ? u"chevron.up"_s : u"chevron.down"_s, kArrowSize, SymbolWeight::Semibold},
                   colors().secondaryLabelColor);
    }
}

void SettingsPicker::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Down || event->key() == Qt::Key_Up)
        click();
    else
        DrawnControl::keyPressEvent(event);
}

void SettingsPicker::openMenu()
{
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (qsizetype i = 0; i < m_options.size(); ++i) {
        QAction *action = menu->addAction(m_options[i], this, [this, i] { choose(int(i)); });
        action->setCheckable(true);
        action->setChecked(i == m_currentIndex);
    }
    applyMenuLook(*menu, m_look());
    QAction *current = menu->actions().value(m_currentIndex);
    // The present choice lies over the button, which is as high as an item of the menu. Menus are
    // placed by their items, and forget what is above the first.
    const int padding = menu->style()->pixelMetric(QStyle::PM_MenuVMargin, nullptr, menu);
    const QPoint end = mapToGlobal(QPoint(width(), 0));
    menu->popup(end - QPoint(menu->sizeHint().width(), padding), current);
    menu->setActiveAction(current);
}

void SettingsPicker::choose(int index)
{
    setCurrentIndex(index);
    emit chosen(index);
}
