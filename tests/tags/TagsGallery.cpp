// Saves pictures of the chips of a menu and of the question for a new tag, for people to look at.
//
//   TagsGallery DIR

#include "foundation/UserDefaults.h"
#include "language/LanguageManager.h"
#include "language/Localized.h"
#include "tags/MaxLengthTextField.h"
#include "tags/NewTagAlert.h"
#include "tags/TagChipRow.h"
#include "tags/TagHoverContainer.h"

#include <QApplication>
#include <QDir>
#include <QMenu>
#include <QPainter>
#include <QTemporaryDir>
#include <QTest>
#include <QWidgetAction>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

void save(QWidget &widget, const QString &path, ColorScheme scheme)
{
    const qreal scale = widget.devicePixelRatioF();
    QImage canvas(widget.size() * scale, QImage::Format_RGB32);
    canvas.setDevicePixelRatio(scale);
    canvas.fill(scheme == ColorScheme::Dark ? QColor(0x34, 0x38, 0x40) : QColor(0xC9, 0xCE, 0xD4));
    QPainter painter(&canvas);
    painter.drawPixmap(0, 0, widget.grab());
    painter.end();
    canvas.save(path);
    std::printf("%s\n", qPrintable(path));
}

void showMenu(const QString &path, const QStringList &names, ColorScheme scheme)
{
    QMenu menu;
    menu.addAction(localized(u"menu.favorite"_s, u"Favorite"_s));
    menu.addSeparator();
    auto *row = new TagChipRow(names, {names.at(0), names.at(2)}, systemColors(scheme));
    row->setAnimated(false);
    auto *action = new QWidgetAction(&menu);
    action->setDefaultWidget(row);
    menu.addAction(action);
    menu.addAction(localized(u"alert.new_tag.title"_s, u"New Tag"_s) + u'…');
    menu.addSeparator();
    menu.addAction(localized(u"menu.delete"_s, u"Delete"_s));
    applyMenuLook(menu, {scheme, true});
    menu.popup({100, 100});
    static_cast<void>(QTest::qWaitForWindowExposed(&menu));
    QEnterEvent enter({30, 11}, {30, 11}, {30, 11});
    QCoreApplication::sendEvent(row->chips().at(2), &enter);
    save(menu, path + u"chips.png"_s, scheme);
    QTest::keyClick(&menu, Qt::Key_Down);
    QTest::keyClick(&menu, Qt::Key_Down);
    save(menu, path + u"chips-focus.png"_s, scheme);
}

void showAlert(const QString &path, const QString &name, ColorScheme scheme)
{
    QWidget window;
    window.resize(680, 500);
    QPalette palette;
    palette.setColor(QPalette::Window, systemColors(scheme).windowBackgroundColor);
    window.setPalette(palette);
    window.show();
    window.activateWindow();
    static_cast<void>(QTest::qWaitForWindowActive(&window));
    NewTagAlert alert({scheme, true}, &window);
    alert.open();
    alert.field().setText(name);
    save(window, path + u"new-tag.png"_s, scheme);
    AlertSheet deletion({.title = localized(u"alert.delete_tag.title"_s, u"Delete Tag"_s),
                         .information = filledIn(localized(u"alert.delete_tag.confirm"_s, u"%@"_s),
                                                 {name}),
                         .confirm = localized(u"button.delete"_s, u"删除"_s),
                         .cancel = localized(u"button.cancel"_s, u"取消"_s)},
                        AlertSheet::Kind::Destructive, {scheme, true}, &window);
    alert.cancel();
    deletion.open();
    save(window, path + u"delete-tag.png"_s, scheme);
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    const QString directory = QApplication::arguments().value(1);
    if (directory.isEmpty() || !QDir().mkpath(directory))
        return 1;
    const QTemporaryDir settings;
    UserDefaults defaults(settings.filePath(u"tessarine.conf"_s));
    LanguageManager languages(defaults);
    languages.install();
    for (const bool isChinese : {false, true}) {
        languages.setLanguage(isChinese ? AppLanguage::Chinese : AppLanguage::English);
        const QStringList names = isChinese
            ? QStringList{u"旅行"_s, u"账目"_s, u"帆船"_s, u"菜谱"_s, u"Work"_s, u"阅读清单"_s}
            : QStringList{u"travel"_s, u"accounts"_s, u"sailing"_s, u"recipes"_s,
                          u"Work"_s, u"reading list"_s, u"snippets"_s};
        for (const ColorScheme scheme : {ColorScheme::Light, ColorScheme::Dark}) {
            const QString path = directory + u'/' + (isChinese ? u"zh-"_s : u"en-"_s)
                + (scheme == ColorScheme::Dark ? u"dark-"_s : u"light-"_s);
            showMenu(path, names, scheme);
            showAlert(path, isChinese ? u"奶奶的花园"_s : u"Grandma’s garden"_s, scheme);
        }
    }
    return 0;
}
