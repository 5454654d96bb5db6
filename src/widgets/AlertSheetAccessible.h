#pragma once

#include <QAccessibleWidget>

class AlertSheet;

/// Tells assistive programs of an alert: it is a dialog that keeps the input to itself.
class AlertSheetAccessible : public QAccessibleWidget
{
public:
    explicit AlertSheetAccessible(AlertSheet &sheet);

    QAccessible::State state() const override;
};
