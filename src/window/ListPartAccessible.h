#pragma once

#include <QAccessible>
#include <QPointer>

class ClipboardTableView;

/// What is told alike of all that stands in the list and has no widget: it has no parts of its own,
/// and outlives the list without harm.
class ListPartAccessible : public QAccessibleInterface
{
public:
    bool isValid() const override { return m_view; }
    QObject *object() const override { return nullptr; }
    QWindow *window() const override;
    QAccessibleInterface *parent() const override;
    QAccessibleInterface *child(int) const override { return nullptr; }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    void setText(QAccessible::Text, const QString &) override {}

protected:
    explicit ListPartAccessible(ClipboardTableView &view);

    /// Null once the list is gone.
    ClipboardTableView *view() const { return m_view; }

private:
    QPointer<ClipboardTableView> m_view;
};
