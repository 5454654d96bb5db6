#pragma once

#include "window/FilterButton.h"
#include "window/FilterCategory.h"

/// The strip of pills that narrow the list. One of them is selected.
class FilterBarView : public QWidget
{
    Q_OBJECT

public:
    explicit FilterBarView(QWidget *parent = nullptr);

    const FilterCategory &selectedCategory() const { return m_selectedCategory; }

    /// Announces the category if it is another one than before.
    void selectCategory(const FilterCategory &category);

    void setColors(const SystemColors &colors);

    /// Takes the titles from the language's table again.
    void refreshTitles();

signals:
    void filterSelected(const FilterCategory &category);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void buildBaseButtons();
    void layoutButtons();
    void restyle();

    FilterCategory m_selectedCategory;
    QList<FilterButton *> m_baseButtons;
};
