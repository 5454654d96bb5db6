#include "widgets/MenuFrame.h"

#include "widgets/MenuStyle.h"

#include <QApplication>
#include <QMenu>
#include <QMouseEvent>

namespace {

/// The menu out of which \a menu opened, if it is a submenu.
QMenu *parentMenu(const QMenu &menu)
{
    const QList<QObject *> owners = menu.menuAction()->associatedObjects();
    for (QObject *owner : owners) {
        auto *parent = qobject_cast<QMenu *>(owner);
        if (parent && parent->isVisible())
            return parent;
    }
    return nullptr;
}

void closeAll(QMenu &menu)
{
    QMenu *parent = parentMenu(menu);
    menu.close();
    if (parent)
        closeAll(*parent);
}

} // namespace

MenuFrame::MenuFrame(QMenu &menu)
    : QObject(&menu)
    , m_menu(menu)
{
    menu.installEventFilter(this);
}

bool MenuFrame::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Show:
        if (!event->spontaneous()) {
            standBesideParent();
            addRoom();
        }
        break;
    case QEvent::Hide:
        if (!event->spontaneous())
            removeRoom();
        break;
    case QEvent::MouseMove:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease: return passOn(static_cast<const QMouseEvent &>(*event));
    default: break;
    }
    return QObject::eventFilter(watched, event);
}

/// A submenu that found no place at the right of its menu is put over it otherwise.
void MenuFrame::standBesideParent()
{
    const QMenu *parent = parentMenu(m_menu);
    if (!parent)
        return;
    const QRect card = parent->geometry().marginsRemoved(parent->contentsMargins());
    if (m_menu.geometry().center().x() < card.center().x())
        m_menu.move(card.x() - MenuStyle::kSubmenuGap - m_menu.width(), m_menu.y());
}

void MenuFrame::addRoom()
{
    const auto *style = qobject_cast<const MenuStyle *>(m_menu.style());
    // A menu that is too high for the screen scrolls, and scrolling knows of no margins.
    if (!style || m_menu.height() < m_menu.sizeHint().height())
        return;
    const QMargins room = style->room();
    const QRect place = m_menu.geometry();
    m_menu.setContentsMargins(room);
    m_menu.setGeometry(place.marginsAdded(room));
}

void MenuFrame::removeRoom()
{
    if (m_menu.contentsMargins().isNull())
        return;
    m_menu.setContentsMargins(QMargins());
    // Otherwise the menu would tell its size by where its items are now.
    QEvent change(QEvent::FontChange);
    QCoreApplication::sendEvent(&m_menu, &change);
}

QRect MenuFrame::card() const
{
    return m_menu.rect().marginsRemoved(m_menu.contentsMargins());
}

/// What happens in the shadow happens to what lies below: the menu that this one came from, or
/// nothing of ours.
bool MenuFrame::passOn(const QMouseEvent &event)
{
    const QPoint position = event.position().toPoint();
    if (!m_menu.rect().contains(position) || card().contains(position))
        return false;
    for (QMenu *below = parentMenu(m_menu); below; below = parentMenu(*below)) {
        const QPoint there = below->mapFromGlobal(event.globalPosition().toPoint());
        if (below->rect().marginsRemoved(below->contentsMargins()).contains(there)) {
            QMouseEvent passed(event.type(), there, event.scenePosition(), event.globalPosition(),
                               event.button(), event.buttons(), event.modifiers());
            QCoreApplication::sendEvent(below, &passed);
            return true;
        }
    }
    if (event.type() == QEvent::MouseButtonPress)
        closeAll(m_menu);
    return false;
}
