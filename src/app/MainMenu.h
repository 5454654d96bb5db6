#pragma once

#include <QKeySequence>
#include <QObject>
#include <QPointer>

#include <memory>

class QAction;
class QMenu;
class QWidget;

/// The application's own menu. No window shows it, since the program lives in the tray; its
/// shortcuts work in whichever window of the program has the focus. Main thread only.
///
/// What a desktop has no word for is in the menu too, but cannot be chosen.
class MainMenu : public QObject
{
    Q_OBJECT

public:
    MainMenu();
    ~MainMenu() override;

    /// Its two submenus. Items are found in them by their object names.
    QMenu &applicationMenu() { return *m_applicationMenu; }
    QMenu &editMenu() { return *m_editMenu; }

    void refreshMenuTitles();

signals:
    void aboutRequested();
    void settingsRequested();
    void hideRequested();
    void quitRequested();

private:
    struct Title
    {
        QString key;
        QString fallback;
    };
    struct TitledItem
    {
        QAction *action = nullptr;
        Title title;
    };
    /// An item that whatever has the focus carries out, if it can.
    struct EditItem
    {
        QAction *action = nullptr;
        QByteArray slot;
    };

    void buildApplicationMenu();
    void buildEditMenu();
    QAction *addItem(QMenu &menu, const QString &name, const Title &title,
                     const QKeySequence &shortcut = {});
    void addEditItem(const QString &name, const Title &title, const QKeySequence &shortcut,
                     const QByteArray &slot);
    void followFocus(QWidget *widget);
    void installInto(QWidget &window);

    std::unique_ptr<QMenu> m_applicationMenu;
    std::unique_ptr<QMenu> m_editMenu;
    QList<TitledItem> m_titledItems;
    QList<EditItem> m_editItems;
    QPointer<QWidget> m_focusWidget;
};
