#pragma once

#include <QColor>
#include <QImage>
#include <QKeySequence>
#include <QList>
#include <QPoint>
#include <QString>

#include <algorithm>
#include <functional>

/// One line of a status item's menu.
struct StatusMenuEntry
{
    int id = 0; ///< Above zero, and the entry's own in the whole menu.
    QString title; ///< Empty for a separator.
    QKeySequence shortcut; ///< Shown beside the title where the desktop does that.
    QList<StatusMenuEntry> children; ///< A submenu if there are any.
    bool isSeparator = false;

    friend bool operator==(const StatusMenuEntry &one, const StatusMenuEntry &other)
    {
        return one.id == other.id && one.title == other.title && one.shortcut == other.shortcut &&
               one.isSeparator == other.isSeparator &&
               std::ranges::equal(one.children, other.children);
    }
};

/// The program's icon among those of the desktop, in the tray of a panel. Main thread only.
///
/// A desktop may have no tray, get one later, or lose it for a while: the item is there whenever
/// there is one.
class StatusItem
{
public:
    /// Draws the icon in \a color on a transparent ground, \a side pixels high and at least as
    /// wide. The item asks for the sizes and colours that the panels want.
    using IconPainter = std::function<QImage(int side, const QColor &color)>;

    virtual ~StatusItem() = default;

    /// Puts the item into the tray. False if this desktop has none now; should one come later, the
    /// item appears there.
    [[nodiscard]] virtual bool create() = 0;

    /// \a description says what the icon shows, for those who do not see it.
    virtual void setIcon(IconPainter painter, const QString &description) = 0;

    /// What a desktop shows that draws the menus of its status items itself.
    virtual void setMenu(const QList<StatusMenuEntry> &entries) = 0;

    /// Called when the icon was clicked with the left button. The token is what the desktop gave
    /// along for Workspace::noteUserAction(); empty if it gave none.
    std::function<void(const QString &activationToken)> onClicked;

    /// Called where the program has to show the menu itself; \a position is on the screen, in the
    /// icon or at the pointer.
    std::function<void(const QPoint &position)> onMenuRequested;

    /// Called just before a menu that the desktop draws opens, so that setMenu() can still tell
    /// the state of this moment.
    std::function<void()> onMenuWillOpen;

    /// Called when an entry was chosen in a menu that the desktop draws.
    std::function<void(int id)> onMenuEntryChosen;
};
