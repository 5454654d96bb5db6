#include "app/MainMenu.h"

#include "language/Localized.h"

#include <QAction>
#include <QApplication>
#include <QMenu>

using namespace Qt::StringLiterals;

namespace {

bool hasSlot(const QWidget *widget, const QByteArray &slot)
{
    return widget && widget->metaObject()->indexOfSlot(slot + "()") >= 0;
}

} // namespace

MainMenu::MainMenu()
    : m_applicationMenu(std::make_unique<QMenu>())
    , m_editMenu(std::make_unique<QMenu>())
{
    buildApplicationMenu();
    buildEditMenu();
    refreshMenuTitles();
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget *, QWidget *widget) { followFocus(widget); });
    followFocus(QApplication::focusWidget());
}

MainMenu::~MainMenu() = default;

void MainMenu::refreshMenuTitles()
{
    for (const TitledItem &item : std::as_const(m_titledItems))
        item.action->setText(localized(item.title.key, item.title.fallback));
}

void MainMenu::buildApplicationMenu()
{
    QMenu &menu = *m_applicationMenu;
    menu.menuAction()->setObjectName(u"mainMenuItem"_s);
    menu.setTitle(u"Tessarine"_s);
    QAction *about = addItem(menu, u"aboutMenuItem"_s, {u"menu.about"_s, u"About Tessarine"_s});
    connect(about, &QAction::triggered, this, &MainMenu::aboutRequested);
    menu.addSeparator();
    QAction *settings = addItem(menu, u"appSettingsMenuItem"_s,
                                {u"menu.settings"_s, u"Settings..."_s}, Qt::CTRL | Qt::Key_Comma);
    connect(settings, &QAction::triggered, this, &MainMenu::settingsRequested);
    menu.addSeparator();
    QAction *hide = addItem(menu, u"hideMenuItem"_s, {u"menu.hide"_s, u"Hide Tessarine"_s},
                            Qt::CTRL | Qt::Key_H);
    connect(hide, &QAction::triggered, this, &MainMenu::hideRequested);
    // Windows of other programs are theirs and the window manager's here.
    addItem(menu, u"hideOthersMenuItem"_s, {u"menu.hide_others"_s, u"Hide Others"_s},
            Qt::CTRL | Qt::ALT | Qt::Key_H)
        ->setEnabled(false);
    addItem(menu, u"showAllMenuItem"_s, {u"menu.show_all"_s, u"Show All"_s})->setEnabled(false);
    menu.addSeparator();
    // It is there for its key alone, so it needs no title: people see the status menu's.
    QAction *quit = menu.addAction(QString());
    quit->setShortcut(Qt::CTRL | Qt::Key_Q);
    connect(quit, &QAction::triggered, this, &MainMenu::quitRequested);
}

void MainMenu::buildEditMenu()
{
    QAction *item = m_editMenu->menuAction();
    item->setObjectName(u"editMenuItem"_s);
    m_titledItems.append({item, {u"menu.edit"_s, u"Edit"_s}});
    addEditItem(u"cutMenuItem"_s, {u"menu.cut"_s, u"Cut"_s}, Qt::CTRL | Qt::Key_X, "cut");
    addEditItem(u"copyMenuItem"_s, {u"menu.copy"_s, u"Copy"_s}, Qt::CTRL | Qt::Key_C, "copy");
    addEditItem(u"pasteMenuItem"_s, {u"menu.paste"_s, u"Paste"_s}, Qt::CTRL | Qt::Key_V, "paste");
    m_editMenu->addSeparator();
    addEditItem(u"selectAllMenuItem"_s, {u"menu.select_all"_s, u"Select All"_s},
                Qt::CTRL | Qt::Key_A, "selectAll");
}

QAction *MainMenu::addItem(QMenu &menu, const QString &name, const Title &title,
                           const QKeySequence &shortcut)
{
    QAction *action = menu.addAction(QString());
    action->setObjectName(name);
    action->setShortcut(shortcut);
    m_titledItems.append({action, title});
    return action;
}

void MainMenu::addEditItem(const QString &name, const Title &title, const QKeySequence &shortcut,
                           const QByteArray &slot)
{
    QAction *action = addItem(*m_editMenu, name, title, shortcut);
    connect(action, &QAction::triggered, this, [this, slot] {
        if (hasSlot(m_focusWidget, slot))
            QMetaObject::invokeMethod(m_focusWidget, slot.constData(), Qt::DirectConnection);
    });
    m_editItems.append({action, slot});
}

void MainMenu::followFocus(QWidget *widget)
{
    // A menu that is open by itself has the focus, and would take the actions for entries.
    if (widget && widget->window()->windowType() == Qt::Popup)
        return;
    m_focusWidget = widget;
    // A text field answers these keys itself. A list that cannot cut or paste is to get the keys,
    // which an item that can be chosen would take.
    for (const EditItem &item : std::as_const(m_editItems))
        item.action->setEnabled(hasSlot(widget, item.slot));
    if (widget)
        installInto(*widget->window());
}

/// Shortcuts count in the windows that hold their actions.
void MainMenu::installInto(QWidget &window)
{
    const QList<QAction *> actions = m_applicationMenu->actions() + m_editMenu->actions();
    if (window.actions().contains(actions.constFirst()))
        return;
    for (QAction *action : actions) {
        if (!action->isSeparator())
            window.addAction(action);
    }
}
