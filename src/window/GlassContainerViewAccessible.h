#pragma once

#include <QAccessibleWidget>

class GlassContainerView;

/// Tells assistive programs of what stands on the window, but for what is mere decoration or is there
/// for the mouse alone.
class GlassContainerViewAccessible : public QAccessibleWidget
{
public:
    explicit GlassContainerViewAccessible(GlassContainerView &view);

    int childCount() const override;
    QAccessibleInterface *child(int index) const override;
    int indexOfChild(const QAccessibleInterface *child) const override;

private:
    QWidgetList parts() const;
};
