#pragma once

#include "window/ListPartAccessible.h"

/// Tells assistive programs of the text that stands in the list while there are no rows.
class EmptyTextAccessible : public ListPartAccessible
{
public:
    explicit EmptyTextAccessible(ClipboardTableView &view);

    QString text(QAccessible::Text kind) const override;
    QRect rect() const override;
    QAccessible::Role role() const override { return QAccessible::StaticText; }
    QAccessible::State state() const override;
};
