#pragma once

#include <QObject>
#include <QRect>

class QMenu;
class QMouseEvent;

/// Makes room around an open menu for the shadow of its card, and keeps the pointer from noticing.
///
/// Menus are placed by their size. So the room is only added when a menu has found its place, and
/// taken away when it closes. Belongs to the menu.
class MenuFrame : public QObject
{
    Q_OBJECT

public:
    explicit MenuFrame(QMenu &menu);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void standBesideParent();
    void addRoom();
    void removeRoom();
    QRect card() const;
    bool passOn(const QMouseEvent &event);

    QMenu &m_menu;
};
