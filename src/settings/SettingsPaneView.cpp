#include "settings/SettingsPaneView.h"

#include "settings/SettingsCard.h"
#include "settings/SettingsLabel.h"

#include <QVBoxLayout>

#include <utility>

namespace {

constexpr int kSideMargin = 24;
constexpr int kGap = 16;
constexpr int kHeadingGap = 7;
constexpr int kHeadingHeight = 16;
constexpr int kHeadingIndent = 2;
constexpr int kHeadingSize = 12;

} // namespace

SettingsPaneView::SettingsPaneView(const SystemColors &colors, QWidget *parent)
    : QWidget(parent)
    , m_colors(colors)
    , m_column(new QVBoxLayout(this))
{
    m_column->setContentsMargins(kSideMargin, 0, kSideMargin, kGap);
    m_column->setSpacing(0);
    m_column->addStretch(1);
}

SettingsLabel *SettingsPaneView::addHeading()
{
    auto *heading = new SettingsLabel(m_colors, {kHeadingSize, QFont::DemiBold},
                                      &SystemColors::secondaryLabelColor, this);
    heading->setFixedHeight(kHeadingHeight);
    heading->setContentsMargins(kHeadingIndent, 0, 0, 0);
    addView(heading);
    m_nextGap = kHeadingGap;
    return heading;
}

SettingsCard *SettingsPaneView::addCard()
{
    auto *card = new SettingsCard(m_colors, this);
    addView(card);
    return card;
}

void SettingsPaneView::addView(QWidget *view)
{
    // The last thing in the column is the empty space below.
    m_column->insertSpacing(m_column->count() - 1, std::exchange(m_nextGap, kGap));
    m_column->insertWidget(m_column->count() - 1, view);
}
