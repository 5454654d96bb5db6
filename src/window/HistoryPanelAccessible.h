#pragma once

#include <QAccessibleWidget>

class HistoryPanel;

/// Tells assistive programs of the window: that it is one, and of the parts that mean something to
/// those who do not see it.
class HistoryPanelAccessible : public QAccessibleWidget
{
public:
    /// Has all panels told of in this way; calling it again does nothing.
    static void install();

    explicit HistoryPanelAccessible(HistoryPanel &panel);

    int childCount() const override;
    QAccessibleInterface *child(int index) const override;
    int indexOfChild(const QAccessibleInterface *child) const override;

private:
    QWidgetList parts() const;
};
