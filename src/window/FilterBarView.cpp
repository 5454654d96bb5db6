#include "window/FilterBarView.h"

#include "appearance/FocusOutline.h"
#include "language/Localized.h"
#include "tags/Tag.h"
#include "tags/TagManager.h"
#include "widgets/AccessibleFactory.h"
#include "window/OverflowMenu.h"

#include <QKeyEvent>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int kLeadingPadding = 24;
constexpr int kTrailingPadding = 24;
constexpr int kButtonSpacing = 8;
constexpr qsizetype kMaxVisibleTags = 3;
constexpr int kMaxTagButtonWidth = 110;
constexpr int kLeastTagRoom = 44; // Must be exceeded, or there are no pills for tags at all.

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

int tagButtonWidth(const QString &name)
{
    return std::min(FilterButton::naturalWidth(shownTagName(name)), kMaxTagButtonWidth);
}

QString overflowTitle(qsizetype hiddenCount)
{
    return u'+' + QString::number(hiddenCount);
}

/// What the pills of the first \a count tags take, with the one for the rest if there is a rest.
int requiredWidth(const QStringList &tags, qsizetype count)
{
    int width = 0;
    for (const QString &name : tags.first(count))
        width += tagButtonWidth(name);
    const bool hasRest = count < tags.size();
    if (hasRest)
        width += FilterButton::naturalWidth(overflowTitle(tags.size() - count));
    const qsizetype pills = count + (hasRest ? 1 : 0);
    return width + int(std::max<qsizetype>(pills - 1, 0)) * kButtonSpacing;
}

/// How many tags get a pill of their own; absent if not even the pill of the rest has room.
std::optional<qsizetype> visibleTagCount(const QStringList &tags, int available)
{
    if (available <= kLeastTagRoom)
        return std::nullopt;
    for (qsizetype count = std::min(tags.size(), kMaxVisibleTags); count >= 0; --count) {
        if (requiredWidth(tags, count) <= available)
            return count;
    }
    return std::nullopt;
}

/// Only what takes the focus can be put in order; which of the two does so is decided afterwards.
void putBehindInTabOrder(FilterButton &first, FilterButton &second)
{
    first.setFocusPolicy(Qt::TabFocus);
    second.setFocusPolicy(Qt::TabFocus);
    QWidget::setTabOrder(&first, &second);
}

} // namespace

FilterBarView::FilterBarView(TagManager &tagManager, QWidget *parent)
    : QWidget(parent)
    , m_tagManager(tagManager)
{
    installAccessible<FilterBarView, RoleAccessible<QAccessible::Grouping>>();
    buildBaseButtons();
    connect(&tagManager, &TagManager::tagsDidChange, this, &FilterBarView::handleTagsChanged);
    layoutButtons(TagButtons::Keep);
    restyle();
}

FilterBarView::~FilterBarView()
{
    // The pill with the focus tells of losing it while the bar ends.
    for (FilterButton *button : buttons())
        button->disconnect(this);
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
    m_colors = colors;
    for (FilterButton *button : buttons())
        button->setColors(colors);
}

void FilterBarView::setMenuLook(const Look &look)
{
    m_menuLook = look;
    if (auto *menu = findChild<OverflowMenu *>())
        recolorMenu(*menu, look);
}

void FilterBarView::closeOverflowMenu()
{
    if (auto *menu = findChild<OverflowMenu *>())
        menu->close();
}

void FilterBarView::refreshTitles()
{
    setAccessibleName(localized(u"speech.filter"_s, u"Filter"_s));
    for (qsizetype i = 0; i < m_baseButtons.size(); ++i) {
        const CategoryItem &item = baseCategories().at(i);
        m_baseButtons[i]->setTitle(localized(item.key, item.fallback));
    }
    layoutButtons(TagButtons::Rebuild);
    restyle();
}

FilterButton *FilterBarView::focusedButton() const
{
    const QList<FilterButton *> all = buttons();
    const auto found = std::ranges::find_if(all, &FilterButton::hasFocus);
    return found == all.end() ? nullptr : *found;
}

void FilterBarView::keyPressEvent(QKeyEvent *event)
{
    const int step = event->key() == Qt::Key_Right ? 1 : event->key() == Qt::Key_Left ? -1 : 0;
    if (step == 0) {
        QWidget::keyPressEvent(event);
        return;
    }
    const QList<FilterButton *> all = buttons();
    if (FilterButton *next = all.value(all.indexOf(focusedButton()) + step))
        next->setFocus(Qt::OtherFocusReason);
}

void FilterBarView::resizeEvent(QResizeEvent *)
{
    layoutButtons(TagButtons::Keep);
    restyle();
}

void FilterBarView::buildBaseButtons()
{
    for (const CategoryItem &item : baseCategories()) {
        FilterButton *button = addButton(item.type, localized(item.key, item.fallback));
        button->setObjectName(item.key);
        m_baseButtons.append(button);
    }
}

FilterButton *FilterBarView::addButton(const std::optional<FilterCategory> &category,
                                       const QString &title)
{
    auto *button = new FilterButton(category, this);
    button->setTitle(title);
    button->setColors(m_colors);
    connect(button, &FilterButton::focusChanged, this, &FilterBarView::handleFocusChange);
    connect(button, &FilterButton::clicked, this, [this, button] {
        if (button->filterCategory())
            selectCategory(*button->filterCategory());
        else
            openOverflowMenu(*button);
    });
    return button;
}

/// Pills of tags are made anew only if their room has changed, or if they are to be.
void FilterBarView::layoutButtons(TagButtons tagButtons)
{
    const bool isOtherWidth = width() != m_lastLayoutWidth;
    m_lastLayoutWidth = width();
    const int y = (height() - FilterButton::kHeight) / 2;
    int x = kLeadingPadding;
    for (FilterButton *button : m_baseButtons) {
        button->setGeometry(x, y, button->naturalWidth(), FilterButton::kHeight);
        x += button->width() + kButtonSpacing;
    }
    if (isOtherWidth || tagButtons == TagButtons::Rebuild)
        rebuildTagButtons(x);
}

void FilterBarView::rebuildTagButtons(int x)
{
    const bool hadFocus = focusedButton();
    removeTagButtons();
    const QStringList tags = m_tagManager.tagNames();
    const auto count = visibleTagCount(tags, width() - x - kTrailingPadding);
    m_hiddenTagNames = tags.mid(count.value_or(0));
    if (count) {
        for (const QString &name : tags.first(*count))
            x += addTagButton(FilterCategory::tag(name), shownTagName(name), x) + kButtonSpacing;
        if (!m_hiddenTagNames.isEmpty())
            addTagButton({}, overflowTitle(m_hiddenTagNames.size()), x);
    }
    // The focus may have gone with its pill.
    if (hadFocus && !focusedButton())
        tabStop()->setFocus(Qt::OtherFocusReason);
}

void FilterBarView::removeTagButtons()
{
    for (FilterButton *button : std::exchange(m_tagButtons, {})) {
        button->setParent(nullptr);
        button->deleteLater(); // Its own click may have brought this about.
    }
}

/// Returns how wide the pill is.
int FilterBarView::addTagButton(const std::optional<FilterCategory> &category, const QString &title,
                                int x)
{
    FilterButton *button = addButton(category, title);
    const int y = (height() - FilterButton::kHeight) / 2;
    const int width = category ? tagButtonWidth(title) : button->naturalWidth();
    button->setGeometry(x, y, width, FilterButton::kHeight);
    if (!category)
        button->setAccessibleName(filledIn(localized(u"speech.hidden_tags"_s, u"More tags: %d"_s),
                                           {m_hiddenTagNames.size()}));
    putBehindInTabOrder(*buttons().last(), *button);
    m_tagButtons.append(button);
    button->show();
    return width;
}

void FilterBarView::handleTagsChanged()
{
    const bool isGone = m_selectedCategory.kind == FilterCategory::Kind::Tag
        && !m_tagManager.tagNames().contains(m_selectedCategory.tagName);
    if (isGone) {
        m_selectedCategory = FilterCategory::all();
        emit filterSelected(m_selectedCategory);
    }
    layoutButtons(TagButtons::Rebuild);
    restyle();
}

void FilterBarView::restyle()
{
    for (FilterButton *button : buttons())
        button->setSelected(button->filterCategory() == m_selectedCategory);
    refreshTabStop();
}

void FilterBarView::refreshTabStop()
{
    const FilterButton *stop = tabStop();
    for (FilterButton *button : buttons())
        button->setFocusPolicy(button == stop ? Qt::TabFocus : Qt::NoFocus);
}

void FilterBarView::handleFocusChange()
{
    refreshTabStop();
    if (QWidget *parent = parentWidget())
        parent->update(geometry().adjusted(0, -kFocusOutlineRoom, 0, kFocusOutlineRoom));
}

void FilterBarView::openOverflowMenu(FilterButton &button)
{
    auto *menu = new OverflowMenu(m_hiddenTagNames, m_selectedCategory, &button);
    connect(menu, &OverflowMenu::categoryChosen, this, &FilterBarView::selectCategory);
    applyMenuLook(*menu, m_menuLook);
    if (button.releasePosition())
        menu->popUpAt(*button.releasePosition());
    else
        menu->popUpUnderButton();
}

/// The pill that Tab goes to: the one with the focus, else the selected one, which may be hidden in
/// the menu.
FilterButton *FilterBarView::tabStop() const
{
    if (FilterButton *focused = focusedButton())
        return focused;
    const QList<FilterButton *> all = buttons();
    const auto selected = std::ranges::find_if(all, &FilterButton::isSelected);
    if (selected != all.end())
        return *selected;
    return all.last()->filterCategory() ? all.first() : all.last();
}
