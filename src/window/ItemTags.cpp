#include "window/ItemTags.h"

#include "core/ClipboardItemManager.h"
#include "platform/Scheduler.h"
#include "tags/MaxLengthTextField.h"
#include "tags/NewTagAlert.h"
#include "tags/TagManager.h"
#include "window/HistoryListModel.h"

using namespace std::chrono_literals;

namespace {

ClipboardItemPointer withTags(const ClipboardItem &item, const QStringList &tags)
{
    auto changed = std::make_shared<ClipboardItem>(item);
    changed->tags = tags;
    return changed;
}

} // namespace

ItemTags::ItemTags(const HistoryListCollaborators &collaborators, ClipboardItemList &items,
                   HistoryListModel &model)
    : m_with(collaborators)
    , m_items(items)
    , m_model(model)
{
}

ItemTags::~ItemTags()
{
    delete m_newTagAlert;
}

void ItemTags::toggleTag(const QString &name, const QUuid &itemID)
{
    const qsizetype place = indexOfItem(m_items, itemID);
    if (place < 0)
        return;
    const qsizetype row = indexOfItem(m_model.items(), itemID);
    QStringList tags = m_items[place]->tags;
    if (tags.removeAll(name) == 0)
        tags.append(name);
    m_with.itemManager.updateTags(itemID, tags);
    const ClipboardItemPointer changed = withTags(*m_items[place], tags);
    m_items[place] = changed;
    if (onItemChanged)
        onItemChanged(changed, row, row >= 0);
}

void ItemTags::applyRenamedTag(const QString &oldName, const QString &newName)
{
    editAll([&](QStringList tags) -> std::optional<QStringList> {
        const qsizetype first = tags.indexOf(oldName);
        if (first < 0)
            return std::nullopt;
        tags[first] = newName;
        return tags;
    });
}

void ItemTags::applyRemovedTag(const QString &name)
{
    editAll([&](QStringList tags) -> std::optional<QStringList> {
        if (tags.removeAll(name) == 0)
            return std::nullopt;
        return tags;
    });
}

bool ItemTags::renameTag(const QString &oldName, const QString &newName)
{
    if (!m_with.tagManager.renameTag(oldName, newName))
        return false;
    m_with.itemManager.renameTag(oldName, newName);
    applyRenamedTag(oldName, newName);
    return true;
}

bool ItemTags::deleteTag(const QString &name)
{
    m_with.tagManager.deleteTag(name);
    m_with.itemManager.removeTag(name);
    applyRemovedTag(name);
    return true;
}

bool ItemTags::createTag(const QString &name, const QUuid &itemID)
{
    if (!m_with.tagManager.createTag(name))
        return false;
    toggleTag(TagManager::normalizedName(name), itemID);
    return true;
}

bool ItemTags::moveTagToFront(const QString &name)
{
    return m_with.tagManager.moveTagToFront(name);
}

bool ItemTags::moveTagUp(const QString &name)
{
    return m_with.tagManager.moveTagUp(name);
}

bool ItemTags::moveTagDown(const QString &name)
{
    return m_with.tagManager.moveTagDown(name);
}

void ItemTags::setLook(const Look &look)
{
    m_look = look;
    if (m_newTagAlert)
        m_newTagAlert->setLook(look);
}

void ItemTags::requestNewTag(const QUuid &itemID, QWidget &window)
{
    m_showingAlert = m_with.scheduler.after(
        0ms, [this, itemID, over = QPointer<QWidget>(&window)] {
            if (over)
                showNewTagAlert(itemID, *over);
        });
}

void ItemTags::dismissNewTag()
{
    m_showingAlert.reset();
    if (m_newTagAlert)
        m_newTagAlert->cancel();
}

/// Changes the entries of the list, and tells of exactly those rows that have changed.
void ItemTags::editAll(const Edit &edit)
{
    QHash<const ClipboardItem *, ClipboardItemPointer> changed;
    const auto edited = [&](const ClipboardItemPointer &item) -> ClipboardItemPointer {
        const auto known = changed.constFind(item.get());
        if (known != changed.cend())
            return *known;
        const auto tags = edit(item->tags);
        return tags ? withTags(*item, *tags) : nullptr;
    };
    // What is replaced is kept until the end, so that no address means two entries.
    const ClipboardItemList former = m_items;
    for (qsizetype place = 0; place < former.size(); ++place) {
        if (const ClipboardItemPointer item = edited(former[place])) {
            changed.insert(former[place].get(), item);
            m_items[place] = item;
        }
    }
    const ClipboardItemList listed = m_model.items();
    for (qsizetype row = 0; row < listed.size(); ++row) {
        if (const ClipboardItemPointer item = edited(listed[row]))
            m_model.replaceItem(int(row), item);
    }
}

void ItemTags::showNewTagAlert(const QUuid &itemID, QWidget &window)
{
    delete m_newTagAlert;
    m_newTagAlert = new NewTagAlert(m_look, &window);
    NewTagAlert &alert = *m_newTagAlert;
    if (m_with.beep)
        alert.field().onTooLong = m_with.beep;
    connect(&alert.field(), &TextField::pastePressed, this, [this, &alert] {
        if (m_with.pasteboardText)
            alert.field().insert(m_with.pasteboardText());
    });
    connect(&alert, &NewTagAlert::confirmed, this, [this, &alert, itemID] {
        if (!createTag(alert.name(), itemID) && m_with.beep)
            m_with.beep();
    });
    alert.open();
}
