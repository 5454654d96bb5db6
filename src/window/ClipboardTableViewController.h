#pragma once

#include "window/FavoriteLimitHint.h"
#include "window/HistoryFilter.h"
#include "window/HistoryListCollaborators.h"
#include "window/HistoryRow.h"
#include "window/HistoryRowDelegate.h"
#include "window/ItemTags.h"
#include "window/ListUpdater.h"
#include "window/RowDeletion.h"
#include "window/RowMenu.h"
#include "window/SearchPreparation.h"

#include <functional>

class ClipboardTableView;
struct RowPictureName;

/// Feeds the list and carries out what is done to its rows.
///
/// The order of the items is the order of the rows. Filtering and searching select nothing; a
/// selected row keeps its entry for as long as that entry is listed.
class ClipboardTableViewController : public QObject
{
    Q_OBJECT

public:
    enum class Scroll { Keep, ToTop };

    /// The view is the controller's to fill; it and everything else must outlive the controller.
    ClipboardTableViewController(ClipboardTableView &tableView, qreal selectionRadius,
                                 const HistoryListCollaborators &collaborators,
                                 const ClipboardItemList &items);
    ~ClipboardTableViewController() override;

    const ClipboardItemList &items() const { return m_items; }
    const ClipboardItemList &filteredItems() const { return m_model.items(); }

    // Each takes effect with the next applyFilters().
    void setItems(const ClipboardItemList &items) { m_items = items; }
    void setSearchText(const QString &text) { m_filter.setSearchText(text); }
    void setActiveFilter(const FilterCategory &category) { m_filter.setCategory(category); }

    const QString &searchText() const { return m_filter.searchText(); }

    void applyFilters(Scroll scroll);

    /// The person has typed \a text. The list follows at once, or, where texts have to be read back
    /// for that, a moment later, unless another text has come by then.
    void search(const QString &text);

    /// Shows what was found for the last text, before anything is done with the list.
    void finishSearch();

    /// The first row stands for the selected one while none is. Nothing on an empty list.
    void pasteSelectedOrFirst();
    void selectNextRow();
    void selectPreviousRow();

    /// Asks for \a item to be shown in large. False if there is nothing of it to be shown; whether
    /// anybody shows it makes no difference.
    bool requestPreview(const ClipboardItemPointer &item);

    /// Marks an entry or takes the mark away, unless there are as many favourites as are allowed.
    /// The list shows the change at once, ahead of the history itself.
    void toggleFavorite(QUuid id); ///< A copy: the entry that it may belong to is replaced.

    void toggleTag(const QString &name, const QUuid &itemID) { m_itemTags.toggleTag(name, itemID); }
    void applyRenamedTag(const QString &oldName, const QString &newName)
    {
        m_itemTags.applyRenamedTag(oldName, newName);
    }
    void applyRemovedTag(const QString &name) { m_itemTags.applyRemovedTag(name); }

    /// Tags the entries of the list.
    ItemTags &itemTags() { return m_itemTags; }

    /// Asks for a new tag of an entry.
    void requestNewTag(const QUuid &itemID);

    /// How menus, hints and alerts look from now on, and how much moves.
    void setLook(const Look &look);

    /// Takes away the menus, hints and alerts that are on the screen.
    void dismissOverlays();

    /// Words all rows anew.
    void refreshTexts();

    std::function<void(const ClipboardItemPointer &)> onItemSelected;
    std::function<void(const QUuid &)> onFavoriteToggled;
    std::function<void()> onWindowHidden; ///< The window has done its work and may go.
    /// Without it nothing offers a preview. The responder is to have the focus again afterwards.
    std::function<void(const ClipboardItemPointer &, QWidget &responder)> onPreviewRequested;
    /// Without it nothing offers to tag an entry by a popover.
    std::function<void(const QUuid &)> onTagPopoverRequested;

signals:
    /// To be heard by those who do not see it: what has happened, and what the search has found.
    void announced(const QString &text);
    void resultAnnounced(const QString &text);

private:
    void connectTableView();
    void popUpMenu(int row, const QPoint &position, QContextMenuEvent::Reason reason);
    void closeMenuOfGoneItem();
    void performMenuEntry(RowMenu::Entry entry, const QUuid &id);
    void showInFileManager(const ClipboardItem &item);
    void reloadItems();
    void showMatches(const ClipboardItemList &matches, Scroll scroll);
    void applyItemChange(const ClipboardItemPointer &item, qsizetype row, bool wasListed);
    void removeListedItem(qsizetype row);
    void repaintPicture(const RowPictureName &name);
    void selectAndShow(int row);
    void pasteRow(int row);
    void pasteItem(const ClipboardItemPointer &item);
    bool isFavoriteLimitReached() const;
    void refuseFavorite(qsizetype row);
    void refreshEmptyText();
    void announceResult();

    ClipboardTableView &m_tableView;
    HistoryListCollaborators m_with;
    HistoryRowCache m_rows;
    HistoryFilter m_filter;
    ClipboardItemList m_items;
    HistoryListModel m_model;
    HistoryRowDelegate m_delegate;
    ListUpdater m_updater;
    RowDeletion m_deletion;
    RowMenu m_rowMenu;
    FavoriteLimitHint m_limitHint;
    ItemTags m_itemTags;
    SearchPreparation m_searchPreparation;
    bool m_isSearchPending = false; ///< The list is that of an earlier text.
};
