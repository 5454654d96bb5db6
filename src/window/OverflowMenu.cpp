#include "window/OverflowMenu.h"

#include "tags/Tag.h"

#include <QStyle>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int kDistance = 4; // From the button.

/// \a name without what menus read as access keys and shortcuts.
QString titleOf(const QString &name)
{
    return shownTagName(name).replace(u'&', u"&&"_s).replace(u'\t', u' ');
}

} // namespace

OverflowMenu::OverflowMenu(const QStringList &tagNames, const FilterCategory &selected,
                           QWidget *button)
    : QMenu(button)
    , m_button(*button)
{
    setObjectName(u"overflowMenu"_s);
    setAttribute(Qt::WA_DeleteOnClose);
    for (const QString &name : tagNames.first(std::min(kMaxTagsInMenu, tagNames.size()))) {
        const FilterCategory category = FilterCategory::tag(name);
        QAction *item = addAction(titleOf(name), this,
                                  [this, category] { emit categoryChosen(category); });
        item->setCheckable(true);
        item->setChecked(category == selected);
        if (item->isChecked())
            m_checkedItem = item;
    }
}

void OverflowMenu::popUpAt(const QPoint &position)
{
    popup(position);
}

void OverflowMenu::popUpUnderButton()
{
    QPoint place = m_button.mapToGlobal(QPoint(0, m_button.height() + kDistance));
    // Menus that are placed by an item forget what is above the first.
    if (m_checkedItem)
        place.ry() -= style()->pixelMetric(QStyle::PM_MenuVMargin, nullptr, this);
    popup(place, m_checkedItem);
    setActiveAction(m_checkedItem ? m_checkedItem : actions().value(0));
}
