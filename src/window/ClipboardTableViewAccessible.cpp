#include "window/ClipboardTableViewAccessible.h"

#include "window/ClipboardTableView.h"
#include "window/EmptyTextAccessible.h"
#include "window/HistoryRowAccessible.h"

#include <QSet>

#include <algorithm>
#include <utility>

namespace {

/// When more come at once it is another list, and nobody wants to hear of each.
constexpr int kToldNewRows = 8;

/// So many rows of entries that are not listed are kept: a search that is taken back brings their
/// entries back, and whoever has asked for a row may ask it more.
constexpr qsizetype kKeptGoneRows = 64;

void tell(ClipboardTableView &view, QAccessible::Event what, int row)
{
    // Even an event that nobody hears would have the row made.
    if (!QAccessible::isActive())
        return;
    QAccessibleEvent event(&view, what);
    event.setChild(row);
    QAccessible::updateAccessibility(&event);
}

} // namespace

void ClipboardTableViewAccessible::tellFocus(ClipboardTableView &view, int row)
{
    tell(view, QAccessible::Focus, row);
}

void ClipboardTableViewAccessible::tellNewRows(ClipboardTableView &view, int first, int last)
{
    if (last - first >= kToldNewRows)
        return;
    for (int row = first; row <= last; ++row)
        tell(view, QAccessible::ObjectCreated, row);
}

void ClipboardTableViewAccessible::tellChangedRows(ClipboardTableView &view, int first, int last)
{
    if (!QAccessible::isActive())
        return;
    const auto [firstInSight, lastInSight] = view.rowsInSight();
    for (int row = std::max(first, firstInSight); row <= std::min(last, lastInSight); ++row)
        tell(view, QAccessible::NameChanged, row);
}

void ClipboardTableViewAccessible::tellEmptyText(ClipboardTableView &view)
{
    if (view.items().isEmpty())
        tell(view, QAccessible::NameChanged, 0);
}

void ClipboardTableViewAccessible::describeRow(ClipboardTableView &view, int row,
                                               const QString &description)
{
    if (!QAccessible::isActive())
        return;
    QAccessibleInterface *list = QAccessible::queryAccessibleInterface(&view);
    auto *child = dynamic_cast<HistoryRowAccessible *>(list ? list->child(row) : nullptr);
    if (!child)
        return;
    child->setDescription(description);
    tell(view, QAccessible::DescriptionChanged, row);
}

ClipboardTableViewAccessible::ClipboardTableViewAccessible(ClipboardTableView &view)
    : QAccessibleWidget(&view, QAccessible::List)
{
}

ClipboardTableViewAccessible::~ClipboardTableViewAccessible()
{
    for (const QAccessible::Id id : std::as_const(m_rows))
        QAccessible::deleteAccessibleInterface(id);
    if (m_emptyText)
        QAccessible::deleteAccessibleInterface(m_emptyText);
}

int ClipboardTableViewAccessible::childCount() const
{
    // The text counts where there are no rows.
    return std::max(1, int(view().items().size()));
}

QAccessibleInterface *ClipboardTableViewAccessible::child(int index) const
{
    if (index < 0 || index >= childCount())
        return nullptr;
    return view().items().isEmpty() ? emptyTextChild() : rowChild(index);
}

QAccessibleInterface *ClipboardTableViewAccessible::childAt(int x, int y) const
{
    const QModelIndex index = view().indexAt(view().viewport()->mapFromGlobal(QPoint(x, y)));
    return index.isValid() ? child(index.row()) : nullptr;
}

QAccessibleInterface *ClipboardTableViewAccessible::focusChild() const
{
    return view().isSpokenFocus() ? child(view().selectedRow()) : nullptr;
}

int ClipboardTableViewAccessible::indexOfChild(const QAccessibleInterface *child) const
{
    if (const auto *row = dynamic_cast<const HistoryRowAccessible *>(child))
        return row->row();
    return child && child == QAccessible::accessibleInterface(m_emptyText) ? 0 : -1;
}

ClipboardTableView &ClipboardTableViewAccessible::view() const
{
    return *static_cast<ClipboardTableView *>(widget());
}

QAccessibleInterface *ClipboardTableViewAccessible::rowChild(int row) const
{
    const QUuid &itemID = view().items().at(row)->id;
    if (!m_rows.contains(itemID)) {
        dropGoneRows();
        m_rows.insert(itemID, QAccessible::registerAccessibleInterface(
                                  new HistoryRowAccessible(view(), itemID, row)));
    }
    return QAccessible::accessibleInterface(m_rows.value(itemID));
}

void ClipboardTableViewAccessible::dropGoneRows() const
{
    const ClipboardItemList &items = view().items();
    if (m_rows.size() < items.size() + kKeptGoneRows)
        return;
    QSet<QUuid> listed;
    listed.reserve(items.size());
    for (const ClipboardItemPointer &item : items)
        listed.insert(item->id);
    m_rows.removeIf([&listed](QHash<QUuid, QAccessible::Id>::iterator row) {
        if (listed.contains(row.key()))
            return false;
        QAccessible::deleteAccessibleInterface(row.value());
        return true;
    });
}

QAccessibleInterface *ClipboardTableViewAccessible::emptyTextChild() const
{
    if (!m_emptyText)
        m_emptyText
            = QAccessible::registerAccessibleInterface(new EmptyTextAccessible(view()));
    return QAccessible::accessibleInterface(m_emptyText);
}
