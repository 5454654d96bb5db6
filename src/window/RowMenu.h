#pragma once

#include "widgets/MenuLook.h"

#include <QContextMenuEvent>
#include <QObject>
#include <QStringList>
#include <QUuid>

#include <memory>
#include <optional>

class QMenu;
struct ClipboardItem;

/// The menu of a row of the list: what can be done with its entry. It tells what was chosen and
/// does nothing itself; by then the entry may have changed or be gone.
class RowMenu : public QObject
{
    Q_OBJECT

public:
    enum class Entry {
        ShowInFileManager,
        Preview,
        Paste,
        Copy,
        ToggleFavorite,
        Tags,
        NewTag,
        Delete
    };

    /// What cannot be done with every entry, or not everywhere.
    struct Offers
    {
        bool hasPreview = false;
        bool hasTagPopover = false;
        bool hasNewTag = false; ///< Where there is no popover, which can make tags as well.
        QStringList tagNames = {}; ///< Of all tags that can be turned on and off.
    };

    RowMenu();
    ~RowMenu() override;

    /// A menu that is open takes its colours.
    void setLook(const Look &look);

    /// Opens at \a position of the screen, anew if it is open. Opened by a key, it has its first
    /// entry chosen already. Returns at once.
    void popUp(const ClipboardItem &item, const Offers &offers, const QPoint &position,
               QContextMenuEvent::Reason reason);

    void close();

    /// The entry whose menu is open.
    std::optional<QUuid> openItem() const;

signals:
    void entryChosen(RowMenu::Entry entry, const QUuid &id);
    /// The menu stays open.
    void tagToggled(const QString &name, const QUuid &id);
    /// The menu has closed because the right button was pressed on none of its entries, at
    /// \a position of the screen.
    void rightPressedElsewhere(const QPoint &position);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void addTags(QMenu &menu, const ClipboardItem &item, const QStringList &tagNames);
    std::unique_ptr<QMenu> makeMenu(const ClipboardItem &item, const Offers &offers);

    Look m_look;
    QUuid m_itemID;
    std::unique_ptr<QMenu> m_menu; ///< The one that was opened last.
};
