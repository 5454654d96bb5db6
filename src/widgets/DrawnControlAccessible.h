#pragma once

#include <QAccessibleWidget>

class DrawnControl;

/// Tells assistive programs of one of our controls. What they do to it is a click, as that of a
/// person; the toolkit would turn a switch without one. A control whose name is not what stands on it
/// is described by that, as a picker by its choice.
class DrawnControlAccessible : public QAccessibleWidget
{
public:
    explicit DrawnControlAccessible(DrawnControl &control);

    QAccessible::Role role() const override;
    QAccessible::State state() const override;
    QString text(QAccessible::Text kind) const override;
    QStringList actionNames() const override;
    void doAction(const QString &name) override;

private:
    DrawnControl &control() const;
    QString ownAction() const;
};
