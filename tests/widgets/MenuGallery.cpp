// Shows a menu with a submenu in the program's look, for people to look at.
//
//   MenuGallery SECONDS [dark] [plain] [left] [many]   leaves it on the screen; "many" is a menu
//                                                      higher than the screen

#include "widgets/MenuLook.h"

#include <QApplication>
#include <QMenu>
#include <QScreen>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

void fill(QMenu &menu)
{
    menu.addAction(u"Show Clipboard History"_s);
    menu.addSeparator();
    QMenu *pause = menu.addMenu(u"Pause Recording"_s);
    for (const QString &title :
         {u"Pause"_s, u"Pause for 15 Minutes"_s, u"Pause for 30 Minutes"_s, u"Pause for 1 Hour"_s})
        pause->addAction(title);
    menu.addSeparator();
    menu.addAction(u"Settings…"_s)->setShortcut(QKeySequence(u"Ctrl+,"_s));
    menu.addAction(u"Not now"_s)->setEnabled(false);
    menu.addSeparator();
    menu.addAction(u"Quit Tessarine"_s)->setShortcut(QKeySequence(u"Ctrl+Q"_s));
    menu.setActiveAction(pause->menuAction());
}

void fillWithMany(QMenu &menu)
{
    for (int i = 1; i <= 50; ++i) {
        QAction *action = menu.addAction(u"Entry %1"_s.arg(i));
        action->setCheckable(true);
        action->setChecked(i == 30);
    }
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    const auto scheme = arguments.contains(u"dark"_s) ? ColorScheme::Dark : ColorScheme::Light;
    const Look look{scheme, !arguments.contains(u"plain"_s)};
    QMenu menu;
    if (arguments.contains(u"many"_s))
        fillWithMany(menu);
    else
        fill(menu);
    applyMenuLook(menu, look);
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    const bool isAtEdge = arguments.contains(u"left"_s);
    menu.popup(isAtEdge ? QPoint(screen.right() - 60, 40) : QPoint(100, 80));
    QTimer::singleShot(arguments.value(1).toInt() * 1000, qApp, &QApplication::quit);
    return QApplication::exec();
}
