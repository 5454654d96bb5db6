#include "widgets/MenuLook.h"

#include "appearance/InterfaceFont.h"
#include "widgets/MenuFrame.h"
#include "widgets/MenuStyle.h"

#include <QApplication>
#include <QMenu>

namespace {

MenuStyle &ensureStyle(QMenu &menu)
{
    if (auto *style = qobject_cast<MenuStyle *>(menu.style()))
        return *style;
    auto *style = new MenuStyle;
    style->setParent(&menu); // A widget does not own its style.
    menu.setStyle(style);
    new MenuFrame(menu);
    return *style;
}

/// \a look with what cannot be changed in a window that is on the screen as it is in \a shown.
Look recolored(const Look &shown, Look look)
{
    look.isTranslucent = shown.isTranslucent;
    look.textScale = shown.textScale;
    return look;
}

void forSubmenus(const QMenu &menu, const Look &look, void (*apply)(QMenu &, const Look &))
{
    for (const QAction *action : menu.actions()) {
        if (QMenu *submenu = action->menu())
            apply(*submenu, look);
    }
}

} // namespace

void applyMenuLook(QMenu &menu, const Look &look)
{
    // Some desktops ask for menus that roll down; ours are there at once.
    QApplication::setEffectEnabled(Qt::UI_AnimateMenu, false);
    QApplication::setEffectEnabled(Qt::UI_FadeMenu, false);

    ensureStyle(menu).setLook(look);
    menu.setFont(interfaceFont(MenuStyle::kTitleSize));
    menu.setAttribute(Qt::WA_TranslucentBackground, look.isTranslucent);
    // With other flags the window is made anew, which it must be to become translucent.
    menu.setWindowFlag(Qt::FramelessWindowHint);
    menu.setWindowFlag(Qt::NoDropShadowWindowHint, look.isTranslucent);
    if (look.isTranslucent)
        menu.clearMask();
    forSubmenus(menu, look, applyMenuLook);
}

void recolorMenu(QMenu &menu, const Look &look)
{
    auto *style = qobject_cast<MenuStyle *>(menu.style());
    if (!style)
        return;
    style->setLook(recolored(style->look(), look));
    menu.update();
    forSubmenus(menu, look, recolorMenu);
}
