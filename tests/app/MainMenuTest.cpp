#include "app/MainMenu.h"

#include "foundation/UserDefaults.h"
#include "language/LanguageManager.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

/// Takes keys without being a text field, like a list.
class KeyTaker : public QWidget
{
public:
    KeyTaker() { setFocusPolicy(Qt::StrongFocus); }

    QStringList keys;

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        if (event->key() != Qt::Key_Control && event->key() != Qt::Key_Alt)
            keys.append(QKeySequence(event->keyCombination()).toString());
    }
};

/// A window of the program with what windows have.
struct Window : QWidget
{
    Window()
    {
        auto *layout = new QVBoxLayout(this);
        for (QWidget *widget : std::initializer_list<QWidget *>{field, editor, list})
            layout->addWidget(widget);
    }

    QLineEdit *field = new QLineEdit(u"some text"_s);
    QPlainTextEdit *editor = new QPlainTextEdit(u"more text"_s);
    KeyTaker *list = new KeyTaker;
};

struct Row
{
    QString name;
    QString title;
    QString shortcut;
};

QList<Row> rowsOf(const QMenu &menu)
{
    QList<Row> rows;
    const QList<QAction *> actions = menu.actions();
    for (const QAction *action : actions) {
        const QString title = action->isSeparator() ? u"-"_s : action->text();
        rows.append({action->objectName(), title, action->shortcut().toString()});
    }
    return rows;
}

bool operator==(const Row &one, const Row &other)
{
    return one.name == other.name && one.title == other.title && one.shortcut == other.shortcut;
}

} // namespace

class MainMenuTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void applicationMenuHoldsItsItemsInOrder();
    void editMenuHoldsItsItemsInOrder();
    void titlesFollowTheLanguage();
    void quitWorksByItsKeyAlthoughItsTitleIsEmpty();
    void settingsAndHideWorkByTheirKeys();
    void keysWorkInEachWindowThatGetsTheFocus();
    void anOpenMenuIsLeftAsItIs();
    void keysWorkInATextField();
    void whatTheDesktopDoesNotOfferCannotBeChosen();
    void textKeysWorkOnceInATextField_data();
    void textKeysWorkOnceInATextField();
    void textKeysReachWhatIsNoTextField();
    void editItemsActOnWhatHasTheFocus();
    void editItemsCannotBeChosenWithoutATextField();

private:
    QAction *editItem(const QString &name) const
    {
        return m_menu->editMenu().findChild<QAction *>(name);
    }
    /// Shows the window, with the focus on \a widget.
    void show(Window &window, QWidget *widget)
    {
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        widget->setFocus();
        QTRY_COMPARE(QApplication::focusWidget(), widget);
    }
    void press(Qt::Key key)
    {
        QTest::keyClick(QApplication::focusWidget(), key, Qt::ControlModifier);
    }

    std::unique_ptr<MainMenu> m_menu;
    std::unique_ptr<Window> m_window;
};

void MainMenuTest::init()
{
    m_menu = std::make_unique<MainMenu>();
    m_window = std::make_unique<Window>();
}

void MainMenuTest::cleanup()
{
    m_window.reset();
    m_menu.reset();
}

void MainMenuTest::applicationMenuHoldsItsItemsInOrder()
{
    const QList<Row> expected{
        {u"aboutMenuItem"_s, u"About Tessarine"_s, {}},
        {{}, u"-"_s, {}},
        {u"appSettingsMenuItem"_s, u"Settings..."_s, u"Ctrl+,"_s},
        {{}, u"-"_s, {}},
        {u"hideMenuItem"_s, u"Hide Tessarine"_s, u"Ctrl+H"_s},
        {u"hideOthersMenuItem"_s, u"Hide Others"_s, u"Ctrl+Alt+H"_s},
        {u"showAllMenuItem"_s, u"Show All"_s, {}},
        {{}, u"-"_s, {}},
        {{}, {}, u"Ctrl+Q"_s},
    };
    QVERIFY(rowsOf(m_menu->applicationMenu()) == expected);
    QCOMPARE(m_menu->applicationMenu().menuAction()->objectName(), u"mainMenuItem"_s);
    QCOMPARE(m_menu->applicationMenu().title(), u"Tessarine"_s);
}

void MainMenuTest::editMenuHoldsItsItemsInOrder()
{
    const QList<Row> expected{
        {u"cutMenuItem"_s, u"Cut"_s, u"Ctrl+X"_s},
        {u"copyMenuItem"_s, u"Copy"_s, u"Ctrl+C"_s},
        {u"pasteMenuItem"_s, u"Paste"_s, u"Ctrl+V"_s},
        {{}, u"-"_s, {}},
        {u"selectAllMenuItem"_s, u"Select All"_s, u"Ctrl+A"_s},
    };
    QVERIFY(rowsOf(m_menu->editMenu()) == expected);
    QCOMPARE(m_menu->editMenu().menuAction()->objectName(), u"editMenuItem"_s);
    QCOMPARE(m_menu->editMenu().title(), u"Edit"_s);
}

void MainMenuTest::titlesFollowTheLanguage()
{
    const QTemporaryDir directory;
    UserDefaults defaults(directory.filePath(u"tessarine.conf"_s));
    LanguageManager languages(defaults);
    languages.install();
    languages.setLanguage(AppLanguage::Chinese);
    m_menu->refreshMenuTitles();
    QStringList titles;
    for (const QMenu *menu : {&m_menu->applicationMenu(), &m_menu->editMenu()}) {
        titles.append(menu->title());
        for (const Row &row : rowsOf(*menu))
            titles.append(row.title);
    }
    QCOMPARE(titles,
             (QStringList{u"Tessarine"_s, u"关于 Tessarine"_s, u"-"_s, u"设置…"_s, u"-"_s,
                          u"隐藏 Tessarine"_s, u"隐藏其他应用"_s, u"全部显示"_s, u"-"_s, QString(),
                          u"编辑"_s, u"剪切"_s, u"复制"_s, u"粘贴"_s, u"-"_s, u"全选"_s}));
}

void MainMenuTest::quitWorksByItsKeyAlthoughItsTitleIsEmpty()
{
    QSignalSpy quit(m_menu.get(), &MainMenu::quitRequested);
    show(*m_window, m_window->list);
    press(Qt::Key_Q);
    QCOMPARE(quit.count(), 1);
}

void MainMenuTest::settingsAndHideWorkByTheirKeys()
{
    QSignalSpy settings(m_menu.get(), &MainMenu::settingsRequested);
    QSignalSpy hide(m_menu.get(), &MainMenu::hideRequested);
    show(*m_window, m_window->list);
    press(Qt::Key_Comma);
    press(Qt::Key_H);
    QCOMPARE(settings.count(), 1);
    QCOMPARE(hide.count(), 1);
    QVERIFY(m_window->list->keys.isEmpty());
}

void MainMenuTest::keysWorkInEachWindowThatGetsTheFocus()
{
    QSignalSpy quit(m_menu.get(), &MainMenu::quitRequested);
    Window other;
    show(*m_window, m_window->list);
    show(other, other.list);
    press(Qt::Key_Q);
    QCOMPARE(quit.count(), 1);
    other.hide();
    m_window->activateWindow();
    show(*m_window, m_window->list);
    press(Qt::Key_Q);
    QCOMPARE(quit.count(), 2);
}

void MainMenuTest::anOpenMenuIsLeftAsItIs()
{
    QMenu popup;
    popup.addAction(u"the only entry"_s);
    popup.popup({10, 10});
    popup.activateWindow(); // As an X server does it where no other window has the focus.
    popup.setFocus();
    QTRY_COMPARE(QApplication::focusWidget(), &popup);
    QCOMPARE(popup.actions().size(), 1);
}

void MainMenuTest::keysWorkInATextField()
{
    QSignalSpy quit(m_menu.get(), &MainMenu::quitRequested);
    QSignalSpy settings(m_menu.get(), &MainMenu::settingsRequested);
    show(*m_window, m_window->field);
    press(Qt::Key_Q);
    press(Qt::Key_Comma);
    QCOMPARE(quit.count(), 1);
    QCOMPARE(settings.count(), 1);
    QCOMPARE(m_window->field->text(), u"some text"_s);
}

void MainMenuTest::whatTheDesktopDoesNotOfferCannotBeChosen()
{
    show(*m_window, m_window->list);
    QTest::keyClick(m_window->list, Qt::Key_H, Qt::ControlModifier | Qt::AltModifier);
    QCOMPARE(m_window->list->keys, QStringList{u"Ctrl+Alt+H"_s});
    for (const QString &name : {u"hideOthersMenuItem"_s, u"showAllMenuItem"_s})
        QVERIFY(!m_menu->applicationMenu().findChild<QAction *>(name)->isEnabled());
}

void MainMenuTest::textKeysWorkOnceInATextField_data()
{
    QTest::addColumn<bool>("isEditor");
    QTest::newRow("of one line") << false;
    QTest::newRow("of several lines") << true;
}

void MainMenuTest::textKeysWorkOnceInATextField()
{
    QFETCH(bool, isEditor);
    QWidget *widget = isEditor ? static_cast<QWidget *>(m_window->editor) : m_window->field;
    const auto text = [&] {
        return isEditor ? m_window->editor->toPlainText() : m_window->field->text();
    };
    const QString before = text();
    show(*m_window, widget);
    press(Qt::Key_A);
    press(Qt::Key_C);
    QCOMPARE(QGuiApplication::clipboard()->text(), before);
    press(Qt::Key_X);
    QCOMPARE(text(), QString());
    press(Qt::Key_V);
    press(Qt::Key_V);
    QCOMPARE(text(), before + before);
}

void MainMenuTest::textKeysReachWhatIsNoTextField()
{
    show(*m_window, m_window->field);
    show(*m_window, m_window->list);
    for (const Qt::Key key : {Qt::Key_X, Qt::Key_C, Qt::Key_V, Qt::Key_A})
        press(key);
    QCOMPARE(m_window->list->keys,
             (QStringList{u"Ctrl+X"_s, u"Ctrl+C"_s, u"Ctrl+V"_s, u"Ctrl+A"_s}));
}

void MainMenuTest::editItemsActOnWhatHasTheFocus()
{
    show(*m_window, m_window->field);
    editItem(u"selectAllMenuItem"_s)->trigger();
    QCOMPARE(m_window->field->selectedText(), u"some text"_s);
    editItem(u"cutMenuItem"_s)->trigger();
    QCOMPARE(m_window->field->text(), QString());
    show(*m_window, m_window->editor);
    editItem(u"selectAllMenuItem"_s)->trigger();
    editItem(u"pasteMenuItem"_s)->trigger();
    QCOMPARE(m_window->editor->toPlainText(), u"some text"_s);
}

void MainMenuTest::editItemsCannotBeChosenWithoutATextField()
{
    show(*m_window, m_window->field);
    QVERIFY(editItem(u"copyMenuItem"_s)->isEnabled());
    show(*m_window, m_window->list);
    for (const QString &name :
         {u"cutMenuItem"_s, u"copyMenuItem"_s, u"pasteMenuItem"_s, u"selectAllMenuItem"_s})
        QVERIFY(!editItem(name)->isEnabled());
}

QTEST_MAIN(MainMenuTest)
#include "MainMenuTest.moc"
