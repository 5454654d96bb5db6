#include "tags/TagChipRow.h"

#include "language/Localized.h"
#include "tags/Tag.h"
#include "tags/TagHoverContainer.h"
#include "widgets/AccessibleFactory.h"

#include <QKeyEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

constexpr int kMaxLineWidth = 304;
constexpr int kSpacing = 4;
constexpr QMargins kInsets(8, 4, 8, 4);

} // namespace

TagChipRow::TagChipRow(const QStringList &tagNames, const QStringList &selected,
                       const SystemColors &colors, QWidget *parent)
    : QWidget(parent)
    , m_colors(colors)
{
    installAccessible<TagChipRow, RoleAccessible<QAccessible::Grouping>>();
    setAccessibleName(localized(u"speech.tag_switches"_s, u"Tags"_s));
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    for (const QString &name : tagNames.first(std::min(kMaxTagsInMenu, tagNames.size()))) {
        auto *chip = new TagHoverContainer(name, selected.contains(name), this);
        chip->onToggle = [this](const QString &toggled) {
            if (onToggle)
                onToggle(toggled);
        };
        m_chips.append(chip);
    }
    placeChips();
}

void TagChipRow::setColors(const SystemColors &colors)
{
    m_colors = colors;
    update();
}

void TagChipRow::setAnimated(bool isAnimated)
{
    for (TagHoverContainer *chip : m_chips)
        chip->setAnimated(isAnimated);
}

void TagChipRow::focusInEvent(QFocusEvent *event)
{
    QWidget::focusInEvent(event);
    if (!m_chips.isEmpty())
        m_chips.first()->setFocus(Qt::TabFocusReason);
}

void TagChipRow::keyPressEvent(QKeyEvent *event)
{
    const TagHoverContainer *chip = focusedChip();
    TagHoverContainer *next = chip ? neighbour(*chip, event->key()) : nullptr;
    if (next)
        next->setFocus(Qt::TabFocusReason);
    // Left and Right mean nothing to the menu's other entries; at the ends they stay here.
    else if (event->key() != Qt::Key_Left && event->key() != Qt::Key_Right)
        QWidget::keyPressEvent(event);
}

void TagChipRow::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const auto drawAll = [&](bool isRaised) {
        for (const TagHoverContainer *chip : m_chips) {
            if (chip->isRaised() == isRaised)
                chip->draw(painter, m_colors);
        }
    };
    drawAll(false);
    drawAll(true);
}

void TagChipRow::placeChips()
{
    int x = 0;
    int y = 0;
    int widest = 0;
    for (TagHoverContainer *chip : m_chips) {
        const int gap = x > 0 ? kSpacing : 0;
        if (x + gap + chip->width() > kMaxLineWidth) {
            x = 0;
            y += chip->height() + kSpacing;
        } else {
            x += gap;
        }
        chip->move(kInsets.left() + x, kInsets.top() + y);
        x += chip->width();
        widest = std::max(widest, x);
    }
    m_size = QSize(widest, y + TagHoverContainer::mainButtonHeight).grownBy(kInsets);
    setMinimumSize(m_size);
}

TagHoverContainer *TagChipRow::focusedChip() const
{
    const auto found = std::ranges::find_if(m_chips, &QWidget::hasFocus);
    return found == m_chips.end() ? nullptr : *found;
}

/// The chip to which \a key leads: the one beside \a chip, or of those above or below it the one
/// that is nearest. Null where the row ends.
TagHoverContainer *TagChipRow::neighbour(const TagHoverContainer &chip, int key) const
{
    const auto place = std::ranges::find(m_chips, &chip) - m_chips.begin();
    if (key == Qt::Key_Left)
        return m_chips.value(place - 1);
    if (key == Qt::Key_Right)
        return m_chips.value(place + 1);
    if (key != Qt::Key_Up && key != Qt::Key_Down)
        return nullptr;
    const int step = chip.height() + kSpacing;
    const int line = chip.y() + (key == Qt::Key_Up ? -step : step);
    TagHoverContainer *nearest = nullptr;
    for (TagHoverContainer *other : m_chips) {
        const auto distance = [&chip](const TagHoverContainer &to) {
            return std::abs(to.geometry().center().x() - chip.geometry().center().x());
        };
        if (other->y() == line && (!nearest || distance(*other) < distance(*nearest)))
            nearest = other;
    }
    return nearest;
}
