#include "window/FilterBarView.h"

#include "language/Localized.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kLeadingPadding = 24;
constexpr int kButtonSpacing = 8;

struct CategoryItem
{
    QString key;
    QString fallback;
    FilterCategory type;
};

const QList<CategoryItem> &baseCategories()
{
    using Type = ClipboardContentType;
    static const QList<CategoryItem> categories{
        {u"filter.all"_s, u"All"_s, FilterCategory::all()},
        {u"filter.text"_s, u"Text"_s, FilterCategory::content(Type::Text)},
        {u"filter.image"_s, u"Image"_s, FilterCategory::content(Type::Image)},
        {u"filter.file"_s, u"File"_s, FilterCategory::content(Type::File)},
        {u"filter.link"_s, u"Link"_s, FilterCategory::content(Type::Url)},
        {u"filter.favorite"_s, u"Favorite"_s, FilterCategory::favorites()},
    };
    return categories;
}

} // namespace

FilterBarView::FilterBarView(QWidget *parent)
    : QWidget(parent)
{
    buildBaseButtons();
    refreshTitles();
}

void FilterBarView::selectCategory(const FilterCategory &category)
{
    const bool isOther = category != m_selectedCategory;
    m_selectedCategory = category;
    restyle();
    if (isOther)
        emit filterSelected(category);
}

void FilterBarView::setColors(const SystemColors &colors)
{
    for (FilterButton *button : m_baseButtons)
        button->setColors(colors);
}

void FilterBarView::refreshTitles()
{
    for (qsizetype i = 0; i < m_baseButtons.size(); ++i) {
        const CategoryItem &item = baseCategories().at(i);
        m_baseButtons[i]->setText(localized(item.key, item.fallback));
    }
    layoutButtons();
    restyle();
}

void FilterBarView::resizeEvent(QResizeEvent *)
{
    layoutButtons();
}

void FilterBarView::buildBaseButtons()
{
    for (const CategoryItem &item : baseCategories()) {
        auto *button = new FilterButton(this);
        button->setObjectName(item.key);
        connect(button, &FilterButton::clicked, this, [this, type = item.type] {
            selectCategory(type);
        });
        m_baseButtons.append(button);
    }
}

void FilterBarView::layoutButtons()
{
    const int y = (height() - FilterButton::kHeight) / 2;
    int x = kLeadingPadding;
    for (FilterButton *button : m_baseButtons) {
        button->setGeometry(x, y, button->naturalWidth(), FilterButton::kHeight);
        x += button->width() + kButtonSpacing;
    }
}

void FilterBarView::restyle()
{
    for (qsizetype i = 0; i < m_baseButtons.size(); ++i)
        m_baseButtons[i]->setSelected(baseCategories().at(i).type == m_selectedCategory);
}
