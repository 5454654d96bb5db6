#include "widgets/AlertSheetAccessible.h"

#include "widgets/AlertSheet.h"

AlertSheetAccessible::AlertSheetAccessible(AlertSheet &sheet)
    : QAccessibleWidget(&sheet, QAccessible::Dialog)
{
}

QAccessible::State AlertSheetAccessible::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.modal = true;
    return state;
}
