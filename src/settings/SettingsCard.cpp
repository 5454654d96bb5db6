#include "settings/SettingsCard.h"

#include "appearance/Hairline.h"
#include "appearance/RoundedBox.h"
#include "settings/SettingsLabel.h"
#include "settings/SettingsMetrics.h"
#include "widgets/ControlMetrics.h"

#include <QHBoxLayout>
#include <QPainter>

using namespace ControlMetrics;
using namespace SettingsMetrics;

namespace {

constexpr int kButtonRowHeight = 46;
constexpr int kControlGap = 6;
constexpr int kValueSize = 12;

} // namespace

SettingsCard::SettingsCard(const SystemColors &colors, QWidget *parent)
    : QWidget(parent)
    , m_colors(colors)
    , m_rows(new QVBoxLayout(this))
{
    m_rows->setContentsMargins(0, 0, 0, 0);
    m_rows->setSpacing(0);
}

QHBoxLayout *SettingsCard::addRow(SettingsLabel *name)
{
    QHBoxLayout *row = addRow(kRowHeight);
    row->addWidget(name, 1);
    return row;
}

QHBoxLayout *SettingsCard::addButtonRow()
{
    return addRow(kButtonRowHeight);
}

SettingsLabel *SettingsCard::makeName()
{
    return new SettingsLabel(m_colors, {kControlFontSize}, &SystemColors::labelColor,
                             this);
}

SettingsLabel *SettingsCard::makeValue()
{
    return new SettingsLabel(m_colors, {kValueSize},
                             &SystemColors::secondaryLabelColor, this);
}

QHBoxLayout *SettingsCard::addRow(int height)
{
    auto *row = new QHBoxLayout;
    row->setContentsMargins(kRowInset, 0, kRowEnd, 0);
    row->setSpacing(kControlGap);
    auto *holder = new QWidget(this);
    holder->setLayout(row);
    holder->setFixedHeight(height);
    m_rows->addWidget(holder);
    return row;
}

void SettingsCard::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    fillRoundedBox(painter, rect(), kCardRadius, m_colors.cardColor);
    lineRoundedBox(painter, rect(), kCardRadius, m_colors.pillLineColor);
    const QColor line = m_colors.separatorLineColor();
    for (int i = 1; i < m_rows->count(); ++i) {
        const int top = m_rows->itemAt(i)->geometry().top();
        drawHairline(painter, QRect(kRowInset, top, width() - 2 * kRowInset, 1), line);
    }
}
