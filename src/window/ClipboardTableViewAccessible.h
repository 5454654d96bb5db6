#pragma once

#include <QAccessibleWidget>
#include <QHash>
#include <QUuid>

class ClipboardTableView;

/// Tells assistive programs of the list: its rows, or the text that stands in their place. A row is
/// told of once it is asked for, so nothing depends on how many there are.
class ClipboardTableViewAccessible : public QAccessibleWidget
{
public:
    // What has happened in a list. Nothing is done while nobody listens.
    static void tellFocus(ClipboardTableView &view, int row);
    static void tellNewRows(ClipboardTableView &view, int first, int last);
    static void tellChangedRows(ClipboardTableView &view, int first, int last);
    static void tellEmptyText(ClipboardTableView &view);
    static void describeRow(ClipboardTableView &view, int row, const QString &description);

    explicit ClipboardTableViewAccessible(ClipboardTableView &view);
    ~ClipboardTableViewAccessible() override;

    int childCount() const override;
    QAccessibleInterface *child(int index) const override;
    QAccessibleInterface *childAt(int x, int y) const override;
    QAccessibleInterface *focusChild() const override;
    int indexOfChild(const QAccessibleInterface *child) const override;

private:
    ClipboardTableView &view() const;
    QAccessibleInterface *rowChild(int row) const;
    void dropGoneRows() const;
    QAccessibleInterface *emptyTextChild() const;

    /// Those that were asked for. Some may be of entries that are listed no more.
    mutable QHash<QUuid, QAccessible::Id> m_rows;
    mutable QAccessible::Id m_emptyText = 0;
};
