#pragma once

#include "widgets/MenuLook.h"
#include "window/FilterCategory.h"

#include <QMenu>

/// The tags that found no place in the filter bar. Ends when it closes.
class OverflowMenu : public QMenu
{
    Q_OBJECT

public:
    /// The item of \a selected is checked, if there is one. The menu belongs to \a button.
    OverflowMenu(const QStringList &tagNames, const FilterCategory &selected, QWidget *button);

    /// Opens at a place of the screen, where the mouse is.
    void popUpAt(const QPoint &position);

    /// Opens under the button, for the keyboard: the checked item comes to lie there, highlighted,
    /// or else the first.
    void popUpUnderButton();

signals:
    void categoryChosen(const FilterCategory &category);

private:
    QWidget &m_button;
    QAction *m_checkedItem = nullptr;
};
