#include "app/TrayIcon.h"

#include "appearance/SymbolImage.h"

#include <QApplication>
#include <QIcon>
#include <QMenu>
#include <QSystemTrayIcon>

using namespace Qt::StringLiterals;

namespace {

/// The sizes that panels ask for; each is drawn for itself, since a scaled symbol is blurred.
constexpr int kIconSizes[] = {16, 22, 24, 32, 48};

/// A symbol is drawn in a box of 1.2 times its point size.
constexpr qreal kBoxPerPoint = 1.2;

QIcon trayIcon()
{
    const QColor color = QApplication::palette().color(QPalette::WindowText);
    QIcon icon;
    for (const int size : kIconSizes) {
        const Symbol symbol{u"list.clipboard.fill"_s, qRound(size / kBoxPerPoint),
                            SymbolWeight::Regular};
        icon.addPixmap(symbolPixmap(symbol, color, 1));
    }
    return icon;
}

} // namespace

TrayIcon::TrayIcon() : m_menu(std::make_unique<QMenu>())
{
}

TrayIcon::~TrayIcon() = default;

bool TrayIcon::create()
{
    m_icon = std::make_unique<QSystemTrayIcon>(trayIcon());
    m_icon->setToolTip(u"Tessarine"_s);
    m_icon->setContextMenu(m_menu.get());
    connect(m_icon.get(), &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                if (reason == QSystemTrayIcon::Trigger)
                    emit clicked();
            });
    m_icon->show();
    return QSystemTrayIcon::isSystemTrayAvailable();
}
