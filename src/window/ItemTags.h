#pragma once

#include "core/ClipboardItem.h"
#include "widgets/MenuLook.h"
#include "window/HistoryListCollaborators.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>
#include <optional>

class HistoryListModel;
class NewTagAlert;
class QWidget;
class ScheduledWork;

/// What the list does with tags: turns them on and off on its entries, and carries out what views
/// ask of the catalogue, where entries have to follow it.
///
/// The list's own entries change at once, ahead of the history.
class ItemTags : public QObject
{
    Q_OBJECT

public:
    /// \a items are all entries of the list, \a model those that it shows; both must outlive this.
    ItemTags(const HistoryListCollaborators &collaborators, ClipboardItemList &items,
             HistoryListModel &model);
    ~ItemTags() override;

    /// Nothing if the list has no such entry.
    void toggleTag(const QString &name, const QUuid &itemID);

    /// Renames the first occurrence of a tag on the entries of the list.
    void applyRenamedTag(const QString &oldName, const QString &newName);
    /// Takes a tag from the entries of the list.
    void applyRemovedTag(const QString &name);

    /// Takes a tag from the catalogue and from all entries. Always true: without such a tag
    /// there is nothing left to do.
    bool deleteTag(const QString &name);

    // What else views ask of the catalogue. False if it refuses; the entries are left alone then.
    bool renameTag(const QString &oldName, const QString &newName);
    /// Gives the new tag to an entry as well.
    bool createTag(const QString &name, const QUuid &itemID);
    bool moveTagToFront(const QString &name);
    bool moveTagUp(const QString &name);
    bool moveTagDown(const QString &name);

    /// Asks over \a window for a new tag of an entry. Returns at once; a menu that asks for this has
    /// closed by the time the question is there.
    void requestNewTag(const QUuid &itemID, QWidget &window);

    /// Takes the question away unanswered.
    void dismissNewTag();

    /// How the question looks from now on.
    void setLook(const Look &look);

    /// Shows what has become of a row: applyItemChange() of the list.
    std::function<void(const ClipboardItemPointer &item, qsizetype row, bool wasListed)>
        onItemChanged;

private:
    /// Absent where nothing is to be changed.
    using Edit = std::function<std::optional<QStringList>(QStringList tags)>;

    void editAll(const Edit &edit);
    void showNewTagAlert(const QUuid &itemID, QWidget &window);

    HistoryListCollaborators m_with;
    ClipboardItemList &m_items;
    HistoryListModel &m_model;
    Look m_look;
    QPointer<NewTagAlert> m_newTagAlert;
    std::unique_ptr<ScheduledWork> m_showingAlert;
};
