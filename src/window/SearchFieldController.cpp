#include "window/SearchFieldController.h"

#include "language/Localized.h"
#include "preview/TextPreview.h"
#include "window/ClipboardTableView.h"
#include "window/ClipboardTableViewController.h"
#include "window/SearchField.h"

#include <QCoreApplication>
#include <QKeyEvent>

using namespace Qt::StringLiterals;

SearchFieldController::SearchFieldController(SearchField &field, ClipboardTableView &tableView,
                                             ClipboardTableViewController &list,
                                             TextPreview *preview)
    : m_field(field)
    , m_tableView(tableView)
    , m_list(list)
    , m_preview(preview)
{
    connectField();
}

void SearchFieldController::clearListSearch()
{
    m_field.clear();
    m_listSearchText.clear();
    m_list.setSearchText({});
    m_list.applyFilters(ClipboardTableViewController::Scroll::ToTop);
}

void SearchFieldController::setPreviewOpen(bool isOpen)
{
    // The preview tells so too when it goes on to another entry.
    if (isOpen && !m_isPreviewOpen) {
        m_listSearchText = m_field.text();
        m_field.clear();
    } else if (!isOpen) {
        m_isPreviewTextEditing = false;
        m_field.setText(m_listSearchText);
    }
    m_isPreviewOpen = isOpen;
    refreshLanguage();
    refreshState();
}

void SearchFieldController::setPreviewTextEditing(bool isEditing)
{
    m_isPreviewTextEditing = isEditing;
    refreshState();
}

void SearchFieldController::refreshLanguage()
{
    const QString name = m_isPreviewOpen
        ? localized(u"preview.search"_s, u"Search in Preview"_s)
        : localized(u"search.placeholder"_s, u"Search"_s);
    m_field.setPlaceholderText(name);
    m_field.setAccessibleName(name);
}

void SearchFieldController::connectField()
{
    connect(&m_field, &SearchField::textEdited, this, &SearchFieldController::search);
    connect(&m_field, &SearchField::newlinePressed, this, &SearchFieldController::paste);
    connect(&m_field, &SearchField::moveDownPressed, this, [this] { move(1); });
    connect(&m_field, &SearchField::moveUpPressed, this, [this] { move(-1); });
    connect(&m_field, &SearchField::cancelPressed, this, &SearchFieldController::cancel);
    connect(&m_field, &SearchField::listKeyPressed, this, &SearchFieldController::pressInList);
}

bool SearchFieldController::isPreviewVisible() const
{
    return m_preview && m_preview->isVisible();
}

void SearchFieldController::search(const QString &text)
{
    if (isPreviewVisible())
        m_preview->updateSearchQuery(text);
    else
        m_list.search(text);
}

void SearchFieldController::paste()
{
    if (!isPreviewVisible())
        m_list.pasteSelectedOrFirst();
}

void SearchFieldController::move(int step)
{
    if (isPreviewVisible())
        m_preview->navigateMatch(step);
    else if (step > 0)
        m_list.selectNextRow();
    else
        m_list.selectPreviousRow();
}

void SearchFieldController::pressInList(int key)
{
    if (isPreviewVisible())
        return;
    m_list.finishSearch();
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
    QCoreApplication::sendEvent(&m_tableView, &press);
}

void SearchFieldController::cancel()
{
    const bool isEmpty = m_field.text().isEmpty();
    if (!isPreviewVisible()) {
        if (isEmpty)
            emit cancelled();
        else
            clearListSearch();
    } else if (isEmpty) {
        m_preview->hidePreview(TextPreview::Focus::Restore);
    } else {
        m_field.clear();
        m_preview->updateSearchQuery({});
    }
}

void SearchFieldController::refreshState()
{
    const bool isIdle = isPreviewVisible() && m_isPreviewTextEditing;
    if (isIdle)
        m_field.clearFocus(); // Or a neighbour would get it.
    m_field.setEnabled(!isIdle);
}
