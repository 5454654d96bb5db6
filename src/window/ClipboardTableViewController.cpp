#include "window/ClipboardTableViewController.h"

#include "core/HistoryCapacity.h"
#include "language/Localized.h"
#include "window/ClipboardTableView.h"

#include <QApplication>

#include <algorithm>

using namespace Qt::StringLiterals;

ClipboardTableViewController::ClipboardTableViewController(
    ClipboardTableView &tableView, qreal selectionRadius,
    const HistoryListCollaborators &collaborators, const ClipboardItemList &items)
    : m_tableView(tableView)
    , m_with(collaborators)
    , m_rows(collaborators.applicationNames, collaborators.clock)
    , m_filter(collaborators.applicationNames)
    , m_items(items)
    , m_model(m_rows)
    , m_delegate(m_rows, selectionRadius)
    , m_updater(tableView, m_model)
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
    m_updater.showItems(m_filter.matchesIn(m_items));
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
    const qsizetype place = indexOfItem(m_items, id);
    if (place < 0)
        return;
    const qsizetype row = indexOfItem(filteredItems(), id);
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
    return count >= currentCapacity(m_with.defaults);
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
