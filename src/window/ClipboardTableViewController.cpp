#include "window/ClipboardTableViewController.h"

#include "core/CanPreview.h"
#include "core/ClipboardItemManager.h"
#include "core/HistoryCapacity.h"
#include "foundation/TextTools.h"
#include "language/Localized.h"
#include "platform/FileViewer.h"
#include "tags/TagManager.h"
#include "window/ClipboardTableView.h"
#include "window/RowPictures.h"

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kMaxShownSearch = 200;

/// What holds everything in the window of \a view. An alert that lies in it gets the window's shape.
QWidget &contentView(QWidget &view)
{
    QWidget *content = &view;
    while (!content->isWindow() && !content->parentWidget()->isWindow())
        content = content->parentWidget();
    return *content;
}

} // namespace

ClipboardTableViewController::ClipboardTableViewController(
    ClipboardTableView &tableView, qreal selectionRadius,
    const HistoryListCollaborators &collaborators, const ClipboardItemList &items)
    : m_tableView(tableView)
    , m_with(collaborators)
    , m_rows(collaborators.applicationNames, collaborators.clock)
    , m_filter(collaborators.applicationNames)
    , m_items(items)
    , m_model(m_rows)
    , m_delegate(m_rows, collaborators.pictures, selectionRadius)
    , m_updater(tableView, m_model, collaborators.scheduler, collaborators.clock)
    , m_deletion(tableView, m_model, collaborators.itemManager)
    , m_limitHint(tableView, collaborators.workspace, collaborators.scheduler,
                  collaborators.clock)
    , m_itemTags(collaborators, m_items, m_model)
    , m_searchPreparation(collaborators.scheduler, collaborators.applicationNames, items)
{
    m_model.reload(items);
    m_tableView.setRowDelegate(&m_delegate);
    m_tableView.setModel(&m_model);
    refreshEmptyText();
    connectTableView();
    m_with.pictures.forgetMissingSources();
    connect(&m_with.pictures, &RowPictures::arrived, this,
            &ClipboardTableViewController::repaintPicture);
    m_deletion.onRemoved = [this] { reloadItems(); };
    m_itemTags.onItemChanged = [this](const ClipboardItemPointer &item, qsizetype row,
                                      bool wasListed) { applyItemChange(item, row, wasListed); };
    m_deletion.fadeRow = [this](const QUuid &id, const std::function<void()> &done) {
        m_updater.transition().fadeOut(id, done);
    };
}

ClipboardTableViewController::~ClipboardTableViewController()
{
    m_tableView.onSpace = nullptr;
    m_tableView.setModel(nullptr);
}

void ClipboardTableViewController::applyFilters(Scroll scroll)
{
    showMatches(m_filter.matchesIn(m_items), scroll);
}

void ClipboardTableViewController::search(const QString &text)
{
    setSearchText(text);
    if (const auto matches = m_filter.matchesAtHandIn(m_items)) {
        showMatches(*matches, Scroll::ToTop);
        return;
    }
    m_isSearchPending = true;
    m_searchPreparation.read(m_filter.unreadItems(), [this] { finishSearch(); });
}

void ClipboardTableViewController::finishSearch()
{
    if (m_isSearchPending)
        applyFilters(Scroll::ToTop);
}

void ClipboardTableViewController::showMatches(const ClipboardItemList &matches, Scroll scroll)
{
    m_isSearchPending = false;
    // What a person narrows is there at once; what comes and goes by itself is seen to.
    const auto motion = scroll == Scroll::ToTop ? ListUpdater::Motion::Skip
                                                : ListUpdater::Motion::Show;
    m_updater.showItems(matches, motion);
    closeMenuOfGoneItem();
    refreshEmptyText();
    if (scroll == Scroll::ToTop && !filteredItems().isEmpty())
        m_tableView.scrollTo(m_model.index(0));
    if (scroll == Scroll::ToTop && m_tableView.isVisible())
        announceResult();
    if (!searchText().isEmpty() && !m_filter.hasNarrowed())
        m_searchPreparation.readAhead(filteredItems());
}

void ClipboardTableViewController::pasteSelectedOrFirst()
{
    finishSearch();
    pasteRow(std::max(0, m_tableView.selectedRow()));
}

void ClipboardTableViewController::selectNextRow()
{
    finishSearch();
    if (!filteredItems().isEmpty())
        selectAndShow(std::min(m_tableView.selectedRow() + 1, int(filteredItems().size()) - 1));
}

void ClipboardTableViewController::selectPreviousRow()
{
    finishSearch();
    if (!filteredItems().isEmpty())
        selectAndShow(std::max(m_tableView.selectedRow() - 1, 0));
}

bool ClipboardTableViewController::requestPreview(const ClipboardItemPointer &item)
{
    if (!canPreview(*item))
        return false;
    if (onPreviewRequested)
        onPreviewRequested(item, m_tableView);
    return true;
}

void ClipboardTableViewController::toggleFavorite(QUuid id)
{
    const qsizetype place = indexOfItem(m_items, id);
    if (place < 0)
        return;
    const qsizetype row = indexOfItem(filteredItems(), id);
    if (!m_items[place]->isFavorite && isFavoriteLimitReached()) {
        refuseFavorite(row);
        return;
    }
    auto changed = std::make_shared<ClipboardItem>(*m_items[place]);
    changed->isFavorite = !changed->isFavorite;
    m_items[place] = changed;
    applyItemChange(changed, row, row >= 0);
    if (onFavoriteToggled)
        onFavoriteToggled(id);
}

void ClipboardTableViewController::requestNewTag(const QUuid &itemID)
{
    m_itemTags.requestNewTag(itemID, contentView(m_tableView));
}

void ClipboardTableViewController::setLook(const Look &look)
{
    m_tableView.setMotionReduced(look.isMotionReduced);
    m_updater.transition().setMotionReduced(look.isMotionReduced);
    m_rowMenu.setLook(look);
    m_limitHint.setLook(look);
    m_itemTags.setLook(look);
}

void ClipboardTableViewController::dismissOverlays()
{
    m_rowMenu.close();
    m_limitHint.dismiss();
    m_itemTags.dismissNewTag();
}

void ClipboardTableViewController::refreshTexts()
{
    m_rows.forgetAll();
    m_model.announceAllChanged();
    refreshEmptyText();
}

void ClipboardTableViewController::connectTableView()
{
    connect(&m_tableView, &ClipboardTableView::enterPressed, this,
            &ClipboardTableViewController::pasteSelectedOrFirst);
    connect(&m_tableView, &ClipboardTableView::rowActivated, this,
            &ClipboardTableViewController::pasteRow);
    connect(&m_tableView, &ClipboardTableView::starClicked, this, [this](int row) {
        const QUuid id = filteredItems().at(row)->id;
        toggleFavorite(id);
    });
    connect(&m_tableView, &ClipboardTableView::deletePressed, &m_deletion,
            &RowDeletion::deleteSelectedRow);
    connect(&m_tableView, &ClipboardTableView::menuRequested, this,
            &ClipboardTableViewController::popUpMenu);
    connect(&m_rowMenu, &RowMenu::entryChosen, this,
            &ClipboardTableViewController::performMenuEntry);
    connect(&m_rowMenu, &RowMenu::tagToggled, this, &ClipboardTableViewController::toggleTag);
    connect(&m_rowMenu, &RowMenu::rightPressedElsewhere, &m_tableView, [this](QPoint position) {
        m_tableView.requestMenuAt(position, QContextMenuEvent::Mouse);
    });
    m_tableView.onSpace = [this](int row) { return requestPreview(filteredItems().at(row)); };
}

void ClipboardTableViewController::popUpMenu(int row, const QPoint &position,
                                             QContextMenuEvent::Reason reason)
{
    const ClipboardItem &item = *filteredItems().at(row);
    m_rowMenu.popUp(item,
                    {.hasPreview = onPreviewRequested && canPreview(item),
                     .hasTagPopover = bool(onTagPopoverRequested),
                     .hasNewTag = m_with.tagManager.tags().size() < m_with.tagManager.maxTagCount(),
                     .tagNames = m_with.tagManager.tagNames()},
                    position, reason);
}

/// Nothing in it would do anything any more.
void ClipboardTableViewController::closeMenuOfGoneItem()
{
    const auto id = m_rowMenu.openItem();
    if (id && indexOfItem(m_items, *id) < 0)
        m_rowMenu.close();
}

/// The list may have changed while the menu was open.
void ClipboardTableViewController::performMenuEntry(RowMenu::Entry entry, const QUuid &id)
{
    const qsizetype row = indexOfItem(filteredItems(), id);
    if (row < 0)
        return;
    const ClipboardItemPointer item = filteredItems().at(row);
    switch (entry) {
    case RowMenu::Entry::ShowInFileManager: showInFileManager(*item); return;
    case RowMenu::Entry::Preview: requestPreview(item); return;
    case RowMenu::Entry::Paste: pasteItem(item); return;
    case RowMenu::Entry::Copy:
        if (m_with.copyItem)
            m_with.copyItem(*item);
        return;
    case RowMenu::Entry::ToggleFavorite: toggleFavorite(id); return;
    case RowMenu::Entry::Tags: onTagPopoverRequested(id); return;
    case RowMenu::Entry::NewTag: requestNewTag(id); return;
    case RowMenu::Entry::Delete: m_deletion.deleteRow(int(row)); return;
    }
}

void ClipboardTableViewController::showInFileManager(const ClipboardItem &item)
{
    const auto resolved = m_with.itemManager.resolveBookmark(item);
    if (!resolved)
        return;
    m_with.itemManager.refreshStaleBookmark(item, resolved->url, resolved->isStale);
    m_with.fileViewer.activateFileViewerSelecting({resolved->url});
    if (onWindowHidden)
        onWindowHidden();
}

void ClipboardTableViewController::reloadItems()
{
    m_items = m_with.itemManager.items();
    applyFilters(Scroll::Keep);
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
    m_updater.removeItem(row);
    refreshEmptyText();
    if (wasSelected && !filteredItems().isEmpty())
        selectAndShow(int(std::min(row, filteredItems().size() - 1)));
}

void ClipboardTableViewController::repaintPicture(const RowPictureName &name)
{
    const auto [first, last] = m_tableView.rowsInSight();
    for (int row = first; row <= last; ++row) {
        const ClipboardItem &item = *filteredItems().at(row);
        if (contentPicture(item) == name || sourcePicture(item) == name)
            m_tableView.update(m_model.index(row));
    }
}

void ClipboardTableViewController::selectAndShow(int row)
{
    m_tableView.selectRow(row);
    m_tableView.scrollTo(m_model.index(row));
}

void ClipboardTableViewController::pasteRow(int row)
{
    // The callback may well take the list down.
    if (row < filteredItems().size())
        pasteItem(ClipboardItemPointer(filteredItems().at(row)));
}

void ClipboardTableViewController::pasteItem(const ClipboardItemPointer &item)
{
    if (onItemSelected)
        onItemSelected(item);
}

bool ClipboardTableViewController::isFavoriteLimitReached() const
{
    const auto count
        = std::ranges::count_if(m_items, [](const auto &item) { return item->isFavorite; });
    return count >= currentCapacity(m_with.defaults);
}

void ClipboardTableViewController::refuseFavorite(qsizetype row)
{
    const QString message = localized(u"favorite.limit_reached"_s, u"已达收藏上限"_s);
    if (row >= 0)
        m_limitHint.showFavoriteLimitHint(int(row), message);
    emit announced(message);
    if (m_with.beep)
        m_with.beep();
}

void ClipboardTableViewController::announceResult()
{
    const QString count = localized(u"speech.result_count"_s, u"Results: %d"_s);
    emit resultAnnounced(filteredItems().isEmpty() ? m_tableView.emptyTitle()
                                                   : filledIn(count, {filteredItems().size()}));
}

void ClipboardTableViewController::refreshEmptyText()
{
    if (m_items.isEmpty()) {
        m_tableView.setEmptyText(localized(u"list.empty"_s, u"Nothing copied yet"_s),
                                 localized(u"list.empty.note"_s, u"What you copy appears here"_s));
    } else if (!searchText().isEmpty()) {
        const QString title = localized(u"list.no_match"_s, u"Nothing matches “%@”"_s);
        m_tableView.setEmptyText(filledIn(title, {shortened(searchText(), kMaxShownSearch)}),
                                 localized(u"list.no_match.note"_s, u"Esc clears the search"_s));
    } else {
        m_tableView.setEmptyText(localized(u"list.no_entry"_s, u"Nothing here yet"_s), {});
    }
}
