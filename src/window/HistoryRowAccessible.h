#pragma once

#include "window/ListPartAccessible.h"

#include <QUuid>

/// Tells assistive programs of one entry in the list, wherever its row is. While the entry is not
/// listed there is a nameless row that is nowhere.
class HistoryRowAccessible : public ListPartAccessible, public QAccessibleActionInterface
{
public:
    static QString favoriteAction();

    HistoryRowAccessible(ClipboardTableView &view, const QUuid &itemID, int row);

    /// -1 if the entry is not listed.
    int row() const;

    /// What is to be heard along with the row, until the next such text.
    void setDescription(const QString &description) { m_description = description; }

    QString text(QAccessible::Text kind) const override;
    QRect rect() const override;
    QAccessible::Role role() const override { return QAccessible::ListItem; }
    QAccessible::State state() const override;
    void *interface_cast(QAccessible::InterfaceType type) override;

    QStringList actionNames() const override;
    QString localizedActionName(const QString &name) const override;
    void doAction(const QString &name) override;
    QStringList keyBindingsForAction(const QString &) const override { return {}; }

private:
    QUuid m_itemID;
    mutable int m_row; ///< Where the entry was last.
    QString m_description;
};
