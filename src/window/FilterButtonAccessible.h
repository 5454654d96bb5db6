#pragma once

#include <QAccessibleWidget>

class FilterButton;

/// Tells assistive programs of a pill: it is one choice of several, or it opens a menu.
///
/// The toolkit's own buttons of that kind cannot all be unchecked, as the pills are when the choice
/// is one of the menu.
class FilterButtonAccessible : public QAccessibleWidget
{
public:
    /// To be called after the selection of \a button has changed.
    static void tellSelection(FilterButton &button);

    explicit FilterButtonAccessible(FilterButton &button);

    QAccessible::Role role() const override;
    QAccessible::State state() const override;
    QStringList actionNames() const override;
    void doAction(const QString &name) override;

private:
    FilterButton &button() const;
};
