#include "window/RowMenu.h"

#include "core/ClipboardItem.h"
#include "language/Localized.h"
#include "tags/TagChipRow.h"

#include <QMenu>
#include <QMouseEvent>
#include <QWidgetAction>

using namespace Qt::StringLiterals;

RowMenu::RowMenu() = default;

RowMenu::~RowMenu() = default;

void RowMenu::setLook(const Look &look)
{
    m_look = look;
    if (!m_menu)
        return;
    recolorMenu(*m_menu, look);
    if (auto *row = m_menu->findChild<TagChipRow *>())
        row->setColors(look.colors());
}

void RowMenu::popUp(const ClipboardItem &item, const Offers &offers, const QPoint &position,
                    QContextMenuEvent::Reason reason)
{
    // The press that opens this menu may still be on its way through the former one.
    close();
    if (m_menu)
        m_menu.release()->deleteLater();
    m_itemID = item.id;
    m_menu = makeMenu(item, offers);
    m_menu->installEventFilter(this);
    applyMenuLook(*m_menu, m_look);
    m_menu->popup(position);
    if (reason == QContextMenuEvent::Keyboard)
        m_menu->setActiveAction(m_menu->actions().first());
}

void RowMenu::close()
{
    if (m_menu)
        m_menu->close();
}

std::optional<QUuid> RowMenu::openItem() const
{
    if (!m_menu || !m_menu->isVisible())
        return {};
    return m_itemID;
}

bool RowMenu::eventFilter(QObject *watched, QEvent *event)
{
    const bool isPress = event->type() == QEvent::MouseButtonPress
        || event->type() == QEvent::MouseButtonDblClick;
    if (!isPress || watched != m_menu.get())
        return false;
    const auto *press = static_cast<QMouseEvent *>(event);
    if (press->button() != Qt::RightButton || m_menu->actionAt(press->position().toPoint()))
        return false;
    // On some desktops the press would reach what is below as well.
    m_menu->setAttribute(Qt::WA_NoMouseReplay);
    close();
    // A quick press may come as a press and a double click, one right after the other. What opened
    // in between would take the second as a press beside it, and close.
    const QPoint position = press->globalPosition().toPoint();
    QMetaObject::invokeMethod(
        this, [this, position] { emit rightPressedElsewhere(position); }, Qt::QueuedConnection);
    return true;
}

std::unique_ptr<QMenu> RowMenu::makeMenu(const ClipboardItem &item, const Offers &offers)
{
    auto menu = std::make_unique<QMenu>();
    menu->setObjectName(u"rowMenu"_s);
    menu->setAccessibleName(localized(u"speech.row_menu"_s, u"Actions for the entry"_s));
    const auto add = [&](Entry entry, const QString &title) {
        const QAction *action = menu->addAction(title);
        connect(action, &QAction::triggered, this,
                [this, entry, id = item.id] { emit entryChosen(entry, id); });
    };
    if (item.contentType == ClipboardContentType::File && item.filePath) {
        add(Entry::ShowInFileManager, localized(u"menu.show_in_finder"_s, u"在访达中显示"_s));
        menu->addSeparator();
    }
    if (offers.hasPreview) {
        add(Entry::Preview, item.contentType == ClipboardContentType::Image
                ? localized(u"menu.preview_image"_s, u"Preview Image"_s)
                : localized(u"menu.preview_text"_s, u"Preview Text"_s));
        menu->addSeparator();
    }
    add(Entry::Paste, localized(u"menu.paste"_s, u"Paste"_s));
    add(Entry::Copy, localized(u"menu.copy"_s, u"Copy"_s));
    menu->addSeparator();
    add(Entry::ToggleFavorite, item.isFavorite
            ? localized(u"menu.unfavorite"_s, u"Unfavorite"_s)
            : localized(u"menu.favorite"_s, u"Favorite"_s));
    menu->addSeparator();
    if (!offers.tagNames.isEmpty())
        addTags(*menu, item, offers.tagNames);
    if (offers.hasTagPopover)
        add(Entry::Tags, localized(u"menu.tags"_s, u"Tags…"_s));
    else if (offers.hasNewTag)
        add(Entry::NewTag, localized(u"alert.new_tag.title"_s, u"New Tag"_s) + u'…');
    if (offers.hasTagPopover || offers.hasNewTag || !offers.tagNames.isEmpty())
        menu->addSeparator();
    add(Entry::Delete, localized(u"menu.delete"_s, u"Delete"_s));
    return menu;
}

void RowMenu::addTags(QMenu &menu, const ClipboardItem &item, const QStringList &tagNames)
{
    auto *row = new TagChipRow(tagNames, item.tags, m_look.colors());
    row->setAnimated(!m_look.isMotionReduced);
    row->onToggle = [this, id = item.id](const QString &name) { emit tagToggled(name, id); };
    auto *action = new QWidgetAction(&menu);
    action->setText(row->accessibleName());
    action->setDefaultWidget(row);
    menu.addAction(action);
}
