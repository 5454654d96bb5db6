#pragma once

#include "widgets/MenuLook.h"
#include "window/FilterButton.h"

#include <optional>

class TagManager;

/// The strip of pills that narrow the list: fixed ones, then the first of the person's tags, then
/// one with a menu of the tags that found no place. At most one pill is selected.
///
/// For Tab the strip is one stop; Left and Right go from pill to pill.
class FilterBarView : public QWidget
{
    Q_OBJECT

public:
    /// \a tagManager must outlive the bar.
    explicit FilterBarView(TagManager &tagManager, QWidget *parent = nullptr);
    ~FilterBarView() override;

    const FilterCategory &selectedCategory() const { return m_selectedCategory; }

    /// Announces the category if it is another one than before.
    void selectCategory(const FilterCategory &category);

    void setColors(const SystemColors &colors);

    /// What the menu of the hidden tags is drawn with; if it is open, it takes the colours.
    void setMenuLook(const Look &look);

    /// For when the window goes: the menu is a window of its own, and would stay.
    void closeOverflowMenu();

    /// Takes the titles from the language's table again.
    void refreshTitles();

    /// The pill that has the focus, if one has. Its ring stands partly outside of the bar, so the
    /// parent draws it, and is told to by update().
    FilterButton *focusedButton() const;

signals:
    void filterSelected(const FilterCategory &category);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    enum class TagButtons { Keep, Rebuild };

    void buildBaseButtons();
    FilterButton *addButton(const std::optional<FilterCategory> &category, const QString &title);
    void layoutButtons(TagButtons tagButtons);
    void rebuildTagButtons(int x);
    void removeTagButtons();
    int addTagButton(const std::optional<FilterCategory> &category, const QString &title, int x);
    void handleTagsChanged();
    void restyle();
    void refreshTabStop();
    void handleFocusChange();
    void openOverflowMenu(FilterButton &button);
    QList<FilterButton *> buttons() const { return m_baseButtons + m_tagButtons; }
    FilterButton *tabStop() const;

    TagManager &m_tagManager;
    FilterCategory m_selectedCategory;
    QList<FilterButton *> m_baseButtons;
    QList<FilterButton *> m_tagButtons; ///< The last one is that of the menu if tags are hidden.
    QStringList m_hiddenTagNames;
    int m_lastLayoutWidth = 0;
    SystemColors m_colors;
    Look m_menuLook;
};
