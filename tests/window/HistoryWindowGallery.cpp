// Shows the history window in its states, for people to look at, and measures its opening.
//
//   HistoryWindowGallery shots DIR     saves pictures of the window as it draws itself
//   HistoryWindowGallery measure N [compat] [warm]   opens it N times over 10,000 entries and
//                                      prints times, after warming up if wanted
//   HistoryWindowGallery stay SECONDS [compat] [dark] [empty] [tags]   leaves it on the screen

#include "tests/fakes/FakeDesktopAppearance.h"
#include "tests/fakes/FakePointerMonitor.h"
#include "tests/fakes/HistoryListFixture.h"
#include "tests/fakes/PaintWatch.h"
#include "tests/window/SampleHistory.h"

#include "language/LanguageManager.h"
#include "platform/linux/QtImageCodec.h"
#include "platform/linux/QtScheduler.h"
#include "platform/linux/SystemClock.h"
#include "window/ClipboardTableView.h"
#include "window/FavoriteLimitHintOverlayView.h"
#include "window/FilterBarView.h"
#include "window/HistoryPanel.h"
#include "window/HistoryWindowFactory.h"
#include "window/RowLayout.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QPainter>
#include <QTest>
#include <QTimer>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

/// Coloured bars on white, as a screenshot of a chart has them.
QImage chart(const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.scale(size.width() / 10.0, size.height() / 10.0);
    painter.fillRect(QRectF(1, 0.8, 4, 0.5), QColor(0x50, 0x53, 0x5A));
    painter.fillRect(QRectF(1.5, 6, 1.2, 3.2), QColor(0x7B, 0xA4, 0xF7));
    painter.fillRect(QRectF(3.5, 4.5, 1.2, 4.7), QColor(0x24, 0x59, 0xC7));
    painter.fillRect(QRectF(5.5, 2.5, 1.2, 6.7), QColor(0x24, 0x59, 0xC7));
    painter.fillRect(QRectF(7.5, 3.5, 1.2, 5.7), QColor(0xD8, 0x6A, 0x12));
    return image;
}

QImage evening(const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    QLinearGradient sky(0, 0, 0, size.height());
    sky.setColorAt(0, QColor(0x23, 0x2B, 0x55));
    sky.setColorAt(0.7, QColor(0xE8, 0x8A, 0x5A));
    painter.fillRect(image.rect(), sky);
    painter.fillRect(0, size.height() * 3 / 4, size.width(), size.height(), QColor(0x1A, 0x2A, 0x20));
    painter.setBrush(QColor(0xFF, 0xE0, 0x90));
    painter.drawEllipse(QPointF(size.width() * 0.6, size.height() * 0.55), 12, 12);
    return image;
}

/// Pictures of several shapes, the thumbnails of which Stage has.
ClipboardItemList pictures()
{
    ClipboardItemList items;
    for (const char *name : {"chart", "evening", "tall", "flat", "small", "missing"}) {
        ClipboardItem item = SampleHistory::item(ClipboardContentType::Image);
        item.imageThumbnailFileName = QString::fromLatin1(name) + u"_thumb.jpg"_s;
        items.append(SampleHistory::shared(item));
    }
    return items;
}

/// A shape of one colour on a ground of another.
QByteArray drawnIcon(const char *ground, const char *shape)
{
    return QByteArray("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"48\" height=\"48\">"
                      "<rect width=\"48\" height=\"48\" rx=\"12\" fill=\"")
        + ground + "\"/><path d=\"" + shape
        + "\" fill=\"none\" stroke=\"#fff\" stroke-width=\"5\"/></svg>";
}

QByteArray documentIcon()
{
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"48\" height=\"48\">"
           "<path d=\"M9 2h20l10 10v34H9z\" fill=\"#fff\" stroke=\"#888\"/>"
           "<path d=\"M2 22h34v12H2z\" fill=\"#c62f2f\"/></svg>";
}

/// The clock of the entries' ages stands still.
struct Stage : HistoryListFixture
{
    Stage()
    {
        setUpList();
        const auto save = [this](const QImage &image, const QString &name) {
            image.save(m_images + u'/' + name + u"_thumb.jpg"_s);
        };
        save(chart({200, 200}), u"chart"_s);
        save(evening({200, 112}), u"evening"_s);
        save(evening({60, 200}), u"tall"_s);
        save(chart({200, 20}), u"flat"_s);
        save(chart({16, 16}), u"small"_s);
        m_icons->files = {{u".pdf"_s, documentIcon()}};
        m_icons->applications = {
            {u"terminal"_s, drawnIcon("#4a4f57", "M12 16l8 8l-8 8M24 32h12")},
            {u"web"_s, drawnIcon("#2f6fd0", "M24 10a14 14 0 1 0 .1 0M10 24h28")},
            {u"screenshot"_s, drawnIcon("#c8437b", "M12 20v-8h8M36 28v8h-8")},
            {u"mail"_s, drawnIcon("#e08a35", "M10 15h28v18h-28zl14 11l14-11")},
            {u"Files"_s, drawnIcon("#5596d8", "M10 34v-20h10l4 4h14v16z")},
            {u"chat"_s, drawnIcon("#3aa35b", "M11 14h26v16h-16l-6 6v-6h-4z")},
        };
        rowPictures = std::make_unique<RowPictures>(m_images, codec, m_icons);
    }

    using HistoryListFixture::m_clock;
    const QtImageCodec codec;
    std::unique_ptr<RowPictures> rowPictures;
    FakePointerMonitor pointer;
    FakeDesktopAppearance appearance;
    QtScheduler scheduler;
    SystemClock runningClock;

    UserDefaults &defaults() { return *m_defaults; }

    HistoryWindowCollaborators collaborators(const Clock &with)
    {
        return {.workspace = *m_workspace,
                .pointerMonitor = pointer,
                .appearance = appearance,
                .defaults = *m_defaults,
                .list = listCollaborators(scheduler, with, *rowPictures)};
    }

    void waitForPictures(const ClipboardItemList &items)
    {
        const qreal scale = qApp->devicePixelRatio();
        for (const ClipboardItemPointer &item : items) {
            static_cast<void>(QTest::qWaitFor([&] {
                return (!hasContentPicture(*item) || !rowPictures->content(*item, scale).isNull())
                    && (!hasSourceIcon(*item) || !rowPictures->source(*item, scale).isNull());
            }));
        }
    }

    bool hasContentPicture(const ClipboardItem &item) const
    {
        const RowPictureName name = contentPicture(item);
        if (name.kind == RowPictureName::Kind::FileIcon)
            return m_icons->fileIcon(name.text, 0).has_value();
        return !name.isEmpty() && QFile::exists(m_images + u'/' + name.text);
    }

    bool hasSourceIcon(const ClipboardItem &item) const
    {
        return m_icons->applicationIcon(sourcePicture(item).text, 0).has_value();
    }

    void setTags(const QStringList &names)
    {
        for (const QString &name : m_tags->tagNames())
            m_tags->deleteTag(name);
        for (const QString &name : names)
            m_tags->createTag(name);
    }

    std::unique_ptr<HistoryWindow> make(const ClipboardItemList &items, const Clock &with)
    {
        auto made = makeHistoryWindow(collaborators(with), items);
        return std::unique_ptr<HistoryWindow>(static_cast<HistoryWindow *>(made.release()));
    }
};

void waitForEntrance(HistoryWindow &window)
{
    static_cast<void>(QTest::qWaitForWindowActive(&window.panel()));
    const PresentationLayer &layer
        = static_cast<HistoryPanel &>(window.panel()).presentationLayer();
    static_cast<void>(QTest::qWaitFor([&layer] { return layer.presentation() == Presentation(); }));
}

constexpr QPoint kMargin(40, 40);

/// The window, and what it has opened over itself.
QList<QWidget *> shownWindows(QWidget &panel)
{
    QList<QWidget *> windows{&panel};
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget != &panel && widget->isVisible())
            windows.append(widget);
    }
    return windows;
}

QImage emptyCanvas(QWidget &panel, bool isDark)
{
    QRect covered = panel.geometry();
    for (const QWidget *widget : shownWindows(panel))
        covered |= widget->geometry();
    covered.setTopLeft(panel.geometry().topLeft());
    const qreal scale = panel.devicePixelRatioF();
    const QSize room(2 * kMargin.x(), 2 * kMargin.y());
    QImage canvas((covered.size() + room) * scale, QImage::Format_RGB32);
    canvas.setDevicePixelRatio(scale);
    canvas.fill(isDark ? QColor(0x34, 0x38, 0x40) : QColor(0xC9, 0xCE, 0xD4));
    return canvas;
}

template <typename Action>
void save(Stage &stage, const QString &path, const ClipboardItemList &items, Action action)
{
    const auto window = stage.make(items, *stage.m_clock);
    window->show();
    // A standing clock leaves the entrance at its beginning; its end is timed all the same.
    waitForEntrance(*window);
    stage.waitForPictures(items);
    action(*window);
    QCoreApplication::processEvents(); // Lays out what has changed.
    QImage canvas = emptyCanvas(window->panel(), stage.appearance.dark.value_or(false));
    QPainter painter(&canvas);
    const QPoint origin = kMargin - window->panel().geometry().topLeft();
    for (QWidget *widget : shownWindows(window->panel())) {
        const QPoint corner = widget->geometry().topLeft() + origin;
        const QRegion shape = widget->mask();
        painter.setClipRegion(shape.translated(corner), shape.isEmpty() ? Qt::NoClip
                                                                        : Qt::ReplaceClip);
        painter.drawPixmap(corner, widget->grab());
    }
    painter.end();
    canvas.save(path);
    std::printf("%s\n", qPrintable(path));
}

void type(HistoryWindow &window, const QString &text)
{
    QTest::keyClicks(window.panel().findChild<QLineEdit *>(), text);
}

QStringList numberedTags(int count)
{
    QStringList names;
    for (int i = 1; i <= count; ++i)
        names.append(u"tag %1"_s.arg(i));
    return names;
}

QList<FilterButton *> pills(HistoryWindow &window)
{
    return window.panel().findChildren<FilterButton *>();
}

/// The filter bar with few and many tags, in both languages, and what can be done to it.
void takeTagShots(Stage &stage, const QString &prefix)
{
    const ClipboardItemList items = SampleHistory::mixed();
    stage.setTags({u"travel"_s, u"accounts"_s, u"sailing"_s, u"recipes"_s, u"Work"_s});
    save(stage, prefix + u"five-tags.png"_s, items, [](auto &) {});
    save(stage, prefix + u"tag-selected.png"_s, items,
         [](auto &window) { pills(window).at(6)->click(); });
    save(stage, prefix + u"pill-focused.png"_s, items, [](auto &) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        for (int i = 0; i < 3; ++i)
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
    });
    save(stage, prefix + u"pill-pressed.png"_s, items,
         [](auto &window) { pills(window).at(2)->setDown(true); });
    save(stage, prefix + u"menu.png"_s, items, [](auto &window) {
        window.panel().template findChild<FilterBarView *>()->selectCategory(
            FilterCategory::tag(u"Work"_s));
        pills(window).last()->click();
    });
    stage.setTags({u"minutes of the club!"_s, u"insurance and claims"_s, u"季度报告与会议纪要"_s, u"x"_s});
    save(stage, prefix + u"long-tags.png"_s, items, [](auto &) {});
    stage.setTags(numberedTags(15));
    save(stage, prefix + u"fifteen-tags.png"_s, items, [](auto &) {});

    LanguageManager language(stage.defaults());
    language.setLanguage(AppLanguage::Chinese);
    language.install();
    stage.setTags({u"旅行"_s, u"账目"_s, u"帆船"_s, u"食谱"_s, u"工作"_s});
    save(stage, prefix + u"chinese.png"_s, items, [](auto &) {});
    stage.setTags({});
}

void openRowMenu(HistoryWindow &window, int row)
{
    auto *list = window.panel().findChild<ClipboardTableView *>();
    list->selectRow(row);
    QTest::keyClick(list, Qt::Key_Menu);
}

bool isHintAtRest()
{
    constexpr qreal kUnseen = 0.005; // Of the scale, which a spring brings near its end.
    for (const QWidget *widget : QApplication::topLevelWidgets()) {
        const auto *hint = qobject_cast<const FavoriteLimitHintOverlayView *>(widget);
        if (hint && hint->pose().opacity == 1 && qAbs(hint->pose().scale - 1) < kUnseen)
            return true;
    }
    return false;
}

/// Wants a favourite more than there may be.
void reachFavoriteLimit(HistoryWindow &window)
{
    auto *list = window.panel().findChild<ClipboardTableView *>();
    list->selectRow(2);
    const RowLayout layout(list->visualRect(list->model()->index(2, 0)));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, layout.star.center().toPoint());
    static_cast<void>(QTest::qWaitFor(isHintAtRest));
}

ClipboardItemList mixedAndManyFavorites()
{
    ClipboardItemList items = SampleHistory::mixed();
    for (int i = 0; i < 1000; ++i) {
        ClipboardItem favorite = SampleHistory::textItem(QString::number(i));
        favorite.isFavorite = true;
        items.append(SampleHistory::shared(favorite));
    }
    return items;
}

/// The menus of rows, and the hint.
void takeOverlayShots(Stage &stage, const QString &prefix, AppLanguage shown)
{
    LanguageManager language(stage.defaults());
    language.setLanguage(shown);
    language.install();
    stage.setTags({u"travel"_s, u"accounts"_s, u"sailing"_s, u"recipes"_s, u"Work"_s});
    const struct
    {
        const char *name;
        int row;
    } menus[] = {{"text", 0}, {"picture", 2}, {"favorite", 3}, {"file", 4}};
    for (const auto &menu : menus) {
        save(stage, prefix + u"menu-%1.png"_s.arg(QLatin1StringView(menu.name)),
             SampleHistory::mixed(), [&](auto &window) { openRowMenu(window, menu.row); });
    }
    save(stage, prefix + u"limit.png"_s, mixedAndManyFavorites(), reachFavoriteLimit);
    stage.setTags({});
}

void takeShots(const QString &directory)
{
    QDir().mkpath(directory);
    Stage stage;
    for (const bool isComposited : {true, false}) {
        for (const bool isDark : {false, true}) {
            stage.appearance.composited = isComposited;
            stage.appearance.dark = isDark;
            const QString prefix = directory + u'/' + (isComposited ? u"glass-"_s : u"plain-"_s)
                + (isDark ? u"dark-"_s : u"light-"_s);
            save(stage, prefix + u"history.png"_s, SampleHistory::mixed(), [](auto &) {});
            save(stage, prefix + u"selected.png"_s, SampleHistory::mixed(), [](auto &window) {
                for (int i = 0; i < 4; ++i)
                    QTest::keyClick(window.panel().template findChild<QLineEdit *>(), Qt::Key_Down);
                window.togglePin();
            });
            save(stage, prefix + u"last.png"_s, SampleHistory::mixed(), [](auto &window) {
                for (int i = 0; i < 10; ++i)
                    QTest::keyClick(window.panel().template findChild<QLineEdit *>(), Qt::Key_Down);
            });
            save(stage, prefix + u"pictures.png"_s, pictures(), [](auto &window) {
                QTest::keyClick(window.panel().template findChild<QLineEdit *>(), Qt::Key_Down);
            });
            save(stage, prefix + u"search.png"_s, SampleHistory::mixed(),
                 [](auto &window) { type(window, u"water"_s); });
            save(stage, prefix + u"nothing.png"_s, SampleHistory::mixed(),
                 [](auto &window) { type(window, u"hydrangea"_s); });
            save(stage, prefix + u"empty.png"_s, {}, [](auto &) {});
            takeTagShots(stage, prefix);
            takeOverlayShots(stage, prefix, AppLanguage::English);
        }
    }
    stage.appearance.composited = true;
    stage.appearance.dark = false;
    takeOverlayShots(stage, directory + u"/chinese-"_s, AppLanguage::Chinese);
}

/// How long \a act takes and, with \a draw after it, until all is drawn.
template <typename Act, typename Draw>
QString handledAndDrawn(const Act &act, const Draw &draw)
{
    QElapsedTimer timer;
    timer.start();
    act();
    const double handled = timer.nsecsElapsed() / 1e6;
    draw();
    return u"%1/%2"_s.arg(handled, 0, 'f', 1).arg(timer.nsecsElapsed() / 1e6, 0, 'f', 1);
}

/// Of letters that are typed one after the other. Leaves the field empty.
QStringList keyTimes(HistoryWindow &window)
{
    auto *field = window.panel().findChild<QLineEdit *>();
    QWidget *list = window.panel().findChild<QAbstractScrollArea *>()->viewport();
    QStringList times;
    for (const char key : {'s', 'o', 'l', 'q', 'u', 'w', 'x'})
        times.append(u"%1 %2"_s.arg(QChar::fromLatin1(key),
                                    handledAndDrawn([&] { QTest::keyClick(field, key); },
                                                    [&] { list->repaint(); })));
    QTest::keyClick(field, Qt::Key_Escape);
    return times;
}

QStringList pillTimes(HistoryWindow &window)
{
    QStringList times;
    for (const int index : {1, 2, 5, 0}) {
        QAbstractButton *pill = pills(window).at(index);
        times.append(handledAndDrawn([&] { QTest::mouseClick(pill, Qt::LeftButton); },
                                     [&] { window.panel().repaint(); }));
    }
    return times;
}

void measure(int rounds, bool isComposited, bool isWarm)
{
    Stage stage;
    stage.appearance.composited = isComposited;
    const ClipboardItemList items = SampleHistory::corpus(10'000);
    if (isWarm) {
        QElapsedTimer timer;
        timer.start();
        warmUpHistoryWindow(stage.collaborators(stage.runningClock));
        std::printf("warmed up in %.1f ms\n", timer.nsecsElapsed() / 1e6);
    }
    for (int round = 0; round < rounds; ++round) {
        QElapsedTimer timer;
        timer.start();
        auto window = stage.make(items, stage.runningClock);
        const double built = timer.nsecsElapsed() / 1e6;
        PaintWatch painted(window->panel());
        window->show();
        const double shown = timer.nsecsElapsed() / 1e6;
        painted.wait();
        const double drawn = timer.nsecsElapsed() / 1e6;
        waitForEntrance(*window);
        const QStringList keys = keyTimes(*window);
        const QStringList filters = pillTimes(*window);
        const QRect frame = window->panel().geometry();
        window->hide();
        static_cast<void>(QTest::qWaitFor([&] { return !window->isVisible(); }));
        std::printf("at %d,%d  ", frame.x(), frame.y());
        std::printf("built %.1f  show() returns %.1f  painted %.1f ms;  key handled/drawn: %s;  "
                    "pill handled/drawn: %s\n",
                    built, shown, drawn, qPrintable(keys.join(u"  "_s)),
                    qPrintable(filters.join(u"  "_s)));
    }
}

int stay(const QStringList &arguments)
{
    Stage stage;
    stage.appearance.composited = !arguments.contains(u"compat"_s);
    stage.appearance.dark = arguments.contains(u"dark"_s);
    if (arguments.contains(u"tags"_s))
        stage.setTags(numberedTags(7));
    const auto window = stage.make(
        arguments.contains(u"empty"_s) ? ClipboardItemList() : SampleHistory::mixed(), *stage.m_clock);
    window->onWindowHidden = [] { QApplication::quit(); };
    window->togglePin();
    window->show();
    QTimer::singleShot(arguments.value(2).toInt() * 1000, qApp, &QApplication::quit);
    return QApplication::exec();
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    const QString what = arguments.value(1);
    if (what == u"shots"_s)
        takeShots(arguments.value(2));
    else if (what == u"measure"_s)
        measure(arguments.value(2).toInt(), !arguments.contains(u"compat"_s),
                arguments.contains(u"warm"_s));
    else if (what == u"stay"_s)
        return stay(arguments);
    else
        return 1;
    return 0;
}
