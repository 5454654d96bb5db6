#pragma once

#include <QAccessible>
#include <QPointer>
#include <QUuid>

class ClipboardTableView;

/// Tells assistive programs of one entry in the list, wherever its row is. While the entry is not
/// listed there is a nameless row that is nowhere.
class HistoryRowAccessible : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    static QString favoriteAction();

    HistoryRowAccessible(ClipboardTableView &view, const QUuid &itemID, int row);

    const QUuid &itemID() const { return m_itemID; }

    /// -1 if the entry is not listed.
    int row() const;

    /// What is to be heard along with the row, until the next such text.
    void setDescription(const QString &description) { m_description = description; }

    bool isValid() const override;
    QObject *object() const override { return nullptr; }
    QWindow *window() const override;
    QAccessibleInterface *parent() const override;
    QAccessibleInterface *child(int) const override { return nullptr; }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    QString text(QAccessible::Text kind) const override;
    void setText(QAccessible::Text, const QString &) override {}
    QRect rect() const override;
    QAccessible::Role role() const override { return QAccessible::ListItem; }
    QAccessible::State state() const override;
    void *interface_cast(QAccessible::InterfaceType type) override;

    QStringList actionNames() const override;
    QString localizedActionName(const QString &name) const override;
    void doAction(const QString &name) override;
    QStringList keyBindingsForAction(const QString &) const override { return {}; }

private:
    QPointer<ClipboardTableView> m_view;
    QUuid m_itemID;
    mutable int m_row; ///< Where the entry was last.
    QString m_description;
};
