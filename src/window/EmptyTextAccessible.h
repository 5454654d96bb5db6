#pragma once

#include <QAccessible>
#include <QPointer>

class ClipboardTableView;

/// Tells assistive programs of the text that stands in the list while there are no rows.
class EmptyTextAccessible : public QAccessibleInterface
{
public:
    explicit EmptyTextAccessible(ClipboardTableView &view);

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
    QAccessible::Role role() const override { return QAccessible::StaticText; }
    QAccessible::State state() const override;

private:
    QPointer<ClipboardTableView> m_view;
};
