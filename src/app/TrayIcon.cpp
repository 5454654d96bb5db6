#include "app/TrayIcon.h"

#include <QApplication>
#include <QCursor>
#include <QIcon>
#include <QSystemTrayIcon>

namespace {

/// The sizes that panels ask for; each is drawn for itself, since a scaled symbol is blurred.
constexpr int kIconSizes[] = {16, 22, 24, 32, 48};

} // namespace

TrayIcon::TrayIcon() : m_icon(std::make_unique<QSystemTrayIcon>())
{
    QObject::connect(m_icon.get(), &QSystemTrayIcon::activated, m_icon.get(),
                     [this](QSystemTrayIcon::ActivationReason reason) {
                         if (reason == QSystemTrayIcon::Trigger && onClicked)
                             onClicked({});
                         else if (reason == QSystemTrayIcon::Context && onMenuRequested)
                             onMenuRequested(QCursor::pos());
                     });
}

TrayIcon::~TrayIcon() = default;

bool TrayIcon::create()
{
    m_icon->show();
    return QSystemTrayIcon::isSystemTrayAvailable();
}

void TrayIcon::setIcon(IconPainter painter, const QString &description)
{
    const QColor color = QApplication::palette().color(QPalette::WindowText);
    QIcon icon;
    for (const int size : kIconSizes)
        icon.addPixmap(QPixmap::fromImage(painter(size, color)));
    m_icon->setIcon(icon);
    m_icon->setToolTip(description);
}

/// Qt offers no menu to the desktop that has not been shown by the program.
void TrayIcon::setMenu(const QList<StatusMenuEntry> &)
{
}
