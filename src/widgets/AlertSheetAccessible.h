#pragma once

#include <QAccessibleWidget>

class AlertSheet;

/// Tells assistive programs of an alert: it is a dialog that keeps the input to itself.
class AlertSheetAccessible : public QAccessibleWidget
{
public:
    /// Has all alerts told of in this way; calling it again does nothing.
    static void install();

    explicit AlertSheetAccessible(AlertSheet &sheet);

    QAccessible::State state() const override;
};
