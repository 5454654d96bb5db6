#include "window/ClipboardTableViewController.h"

#include "core/HistoryCapacity.h"
#include "language/Localized.h"
#include "window/ClipboardTableView.h"

#include <QApplication>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// More separate changes than this cost the view more than showing the list anew.
constexpr qsizetype kMostSingleChanges = 64;

qsizetype indexOf(const ClipboardItemList &items, const QUuid &id)
{
    const auto found = std::ranges::find(items, id, [](const auto &item) { return item->id; });
    return found == items.end() ? -1 : found - items.begin();
}

} // namespace

ClipboardTableViewController::ClipboardTableViewController(
    ClipboardTableView &tableView, qreal selectionRadius, ApplicationNames &names,
    const Clock &clock, const UserDefaults &defaults, const ClipboardItemList &items)
    : m_tableView(tableView)
    , m_defaults(defaults)
    , m_rows(names, clock)
    , m_filter(names)
    , m_items(items)
    , m_model(m_rows)
    , m_delegate(m_rows, selectionRadius)
{
    m_model.reload(items);
    m_tableView.setRowDelegate(&m_delegate);
    m_tableView.setModel(&m_model);
    refreshEmptyText();
    connect(&m_tableView, &ClipboardTableView::enterPressed, this,
            &ClipboardTableViewController::pasteSelectedOrFirst);
    connect(&m_tableView, &ClipboardTableView::rowActivated, this,
            &ClipboardTableViewController::pasteRow);
    connect(&m_tableView, &ClipboardTableView::starClicked, this, [this](int row) {
        const QUuid id = filteredItems().at(row)->id;
        toggleFavorite(id);
    });
}

ClipboardTableViewController::~ClipboardTableViewController()
{
    m_tableView.setModel(nullptr);
}

void ClipboardTableViewController::applyFilters(Scroll scroll)
{
    showItems(m_filter.matchesIn(m_items));
    refreshEmptyText();
    if (scroll == Scroll::ToTop && !filteredItems().isEmpty())
        m_tableView.scrollTo(m_model.index(0));
}

void ClipboardTableViewController::pasteSelectedOrFirst()
{
    pasteRow(std::max(0, m_tableView.selectedRow()));
}

void ClipboardTableViewController::selectNextRow()
{
    if (!filteredItems().isEmpty())
        selectAndShow(std::min(m_tableView.selectedRow() + 1, int(filteredItems().size()) - 1));
}

void ClipboardTableViewController::selectPreviousRow()
{
    if (!filteredItems().isEmpty())
        selectAndShow(std::max(m_tableView.selectedRow() - 1, 0));
}

void ClipboardTableViewController::toggleFavorite(const QUuid &id)
{
    const qsizetype place = indexOf(m_items, id);
    if (place < 0)
        return;
    const qsizetype row = indexOf(filteredItems(), id);
    if (!m_items[place]->isFavorite && isFavoriteLimitReached()) {
        QApplication::beep();
        return;
    }
    auto changed = std::make_shared<ClipboardItem>(*m_items[place]);
    changed->isFavorite = !changed->isFavorite;
    m_items[place] = changed;
    applyItemChange(changed, row, row >= 0);
    if (onFavoriteToggled)
        onFavoriteToggled(id);
}

void ClipboardTableViewController::refreshTexts()
{
    m_rows.forgetAll();
    m_model.announceAllChanged();
    refreshEmptyText();
}

void ClipboardTableViewController::showItems(const ClipboardItemList &items)
{
    const qsizetype oldCount = filteredItems().size();
    const qsizetype newCount = items.size();
    // The counts alone tell the least that changes, and often decide.
    if (chooseListUpdate(oldCount, newCount, oldCount - newCount, std::abs(oldCount - newCount))
        == ListUpdate::Reload) {
        reloadItems(items);
        return;
    }
    const ListDifference difference = listDifference(filteredItems(), items);
    const qsizetype removedCount = difference.removedRows.size();
    const qsizetype changeCount = removedCount + difference.insertedRows.size();
    if (chooseListUpdate(oldCount, newCount, removedCount, changeCount) == ListUpdate::Reload
        || changeCount > kMostSingleChanges)
        reloadItems(items);
    else
        updateItems(items, difference);
}

void ClipboardTableViewController::reloadItems(const ClipboardItemList &items)
{
    const int selected = m_tableView.selectedRow();
    const QUuid selectedId = selected < 0 ? QUuid() : filteredItems().at(selected)->id;
    m_model.reload(items);
    if (!selectedId.isNull())
        selectItem(selectedId);
}

void ClipboardTableViewController::updateItems(const ClipboardItemList &items,
                                               const ListDifference &difference)
{
    // Left alone, the view would select the neighbour of a selected row that goes.
    const int selected = m_tableView.selectedRow();
    QUuid movedId;
    if (selected >= 0 && std::ranges::binary_search(difference.removedRows, selected)) {
        movedId = filteredItems().at(selected)->id;
        m_tableView.deselectAll();
    }
    m_model.update(items, difference);
    if (!movedId.isNull())
        selectItem(movedId);
}

void ClipboardTableViewController::applyItemChange(const ClipboardItemPointer &item, qsizetype row,
                                                   bool wasListed)
{
    const bool isListed = m_filter.matches(*item);
    if (!wasListed && isListed)
        applyFilters(Scroll::Keep);
    else if (wasListed && isListed)
        m_model.replaceItem(int(row), item);
    else if (wasListed)
        removeListedItem(row);
}

void ClipboardTableViewController::removeListedItem(qsizetype row)
{
    const bool wasSelected = m_tableView.selectedRow() == row;
    if (wasSelected)
        m_tableView.deselectAll();
    m_model.removeItem(int(row));
    refreshEmptyText();
    if (wasSelected && !filteredItems().isEmpty())
        selectAndShow(int(std::min(row, filteredItems().size() - 1)));
}

/// Selects the row of an entry, if it is listed, without moving the list.
void ClipboardTableViewController::selectItem(const QUuid &id)
{
    const qsizetype row = indexOf(filteredItems(), id);
    if (row < 0)
        return;
    m_tableView.setAutoScroll(false);
    m_tableView.selectRow(int(row));
    m_tableView.setAutoScroll(true);
}

void ClipboardTableViewController::selectAndShow(int row)
{
    m_tableView.selectRow(row);
    m_tableView.scrollTo(m_model.index(row));
}

void ClipboardTableViewController::pasteRow(int row)
{
    if (row >= filteredItems().size() || !onItemSelected)
        return;
    // The callback may well take the list down.
    const ClipboardItemPointer item = filteredItems().at(row);
    onItemSelected(item);
}

bool ClipboardTableViewController::isFavoriteLimitReached() const
{
    const auto count
        = std::ranges::count_if(m_items, [](const auto &item) { return item->isFavorite; });
    return count >= currentCapacity(m_defaults);
}

void ClipboardTableViewController::refreshEmptyText()
{
    if (m_items.isEmpty()) {
        m_tableView.setEmptyText(localized(u"list.empty"_s, u"Nothing copied yet"_s),
                                 localized(u"list.empty.note"_s, u"What you copy appears here"_s));
    } else if (!searchText().isEmpty()) {
        const QString title = localized(u"list.no_match"_s, u"Nothing matches “%@”"_s);
        m_tableView.setEmptyText(filledIn(title, {searchText()}),
                                 localized(u"list.no_match.note"_s, u"Esc clears the search"_s));
    } else {
        m_tableView.setEmptyText(localized(u"list.no_entry"_s, u"Nothing here yet"_s), {});
    }
}
