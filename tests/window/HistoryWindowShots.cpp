// Saves pictures of the screen with the history window in all its states, for people to look at.
//
//   HistoryWindowShots DIR SUFFIX composited|plain|contrast [STATE,STATE...]
//
// The files are called like history-mixed-light-enSUFFIX.png; without states all are taken.
// It wants a display of its own, with a window manager. What is on the screen is compared with what
// the windows have drawn; the program fails if the two differ.

#include "tests/window/HistoryStage.h"
#include "tests/window/PictureHistory.h"

#include "language/LanguageManager.h"
#include "window/ClipboardTableView.h"
#include "window/FilterBarView.h"
#include "window/FilterButton.h"
#include "window/HistoryPanel.h"
#include "window/RowLayout.h"

#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QPainter>
#include <QScreen>
#include <QTest>

#include <cstdio>
#include <cstdlib>
#include <functional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Where the window stands in a picture: on whole device pixels at a scale of 1.25 too.
constexpr QPoint kCorner(60, 52);
constexpr QSize kMargins(120, 104);
constexpr int kHeight = 500;
constexpr int kListTop = 100;

/// Nothing moves any more by then, and a hint is still there.
constexpr auto kRest = 1s;

void nothing(HistoryWindow &) {}

struct Shot
{
    QString name;
    ClipboardItemList items;
    std::function<void(HistoryWindow &)> act = nothing;
    int height = kHeight;
    QSize margins = kMargins;
    bool hasTagsOfLanguage = true;
    QStringList tags = {}; ///< Otherwise.
};

Shot withTags(const QStringList &tags, Shot shot)
{
    shot.hasTagsOfLanguage = false;
    shot.tags = tags;
    return shot;
}

QLineEdit *field(HistoryWindow &window)
{
    return window.shell().findChild<QLineEdit *>();
}

QList<FilterButton *> pills(HistoryWindow &window)
{
    return window.shell().findChildren<FilterButton *>();
}

void type(HistoryWindow &window, const QString &text)
{
    field(window)->insert(text); // As by hand, so that it is searched.
}

auto selecting(int row)
{
    return [row](HistoryWindow &window) {
        for (int i = 0; i <= row; ++i)
            QTest::keyClick(field(window), Qt::Key_Down);
    };
}

auto choosing(int pill)
{
    return [pill](HistoryWindow &window) { pills(window).at(pill)->click(); };
}

void openRowMenu(HistoryWindow &window)
{
    selecting(3)(window);
    auto *list = window.shell().findChild<ClipboardTableView *>();
    const QPoint place(264, 256);
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, list->viewport()->mapToGlobal(place));
    QCoreApplication::sendEvent(list->viewport(), &event);
}

void openOverflowMenu(HistoryWindow &window, const QString &chosenTag)
{
    auto *bar = window.shell().findChild<FilterBarView *>();
    bar->selectCategory(FilterCategory::tag(chosenTag));
    pills(window).last()->click();
}

void focusAPill(HistoryWindow &window)
{
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
    window.togglePin();
}

void focusThePin(HistoryWindow &)
{
    for (int i = 0; i < 2; ++i)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
}

/// Wants a favourite more than there may be.
void reachFavoriteLimit(HistoryWindow &window)
{
    auto *list = window.shell().findChild<ClipboardTableView *>();
    list->selectRow(2);
    const RowLayout layout(QRectF(list->visualRect(list->model()->index(2, 0))));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, layout.star.center().toPoint());
}

ClipboardItemList withManyFavorites(ClipboardItemList items)
{
    for (int i = 0; i < 1000; ++i) {
        ClipboardItem favorite = SampleHistory::textItem(QString::number(i));
        favorite.isFavorite = true;
        items.append(SampleHistory::shared(favorite));
    }
    return items;
}

struct Contents
{
    ClipboardItemList all;
    ClipboardItemList found;
    ClipboardItemList tagged;
    ClipboardItemList tagOfMenu;
    QString word;
    QString wordOfNothing;
    QString menuTag;
};

Contents contents(AppLanguage language)
{
    using namespace PictureHistory;
    if (language == AppLanguage::Chinese) {
        const ClipboardItemList all = chinese();
        return {all, all, all, all, u"请"_s, u"绣球花"_s, u"家"_s};
    }
    return {english(),  englishFound(),  englishTagged(), englishAtWork(),
            u"water"_s, u"hydrangea"_s, u"Work"_s};
}

/// Those that are worth a picture without a compositor too, and in high contrast.
QList<Shot> mainShots(const Contents &shown)
{
    return {
        {u"mixed"_s, shown.all},
        {u"selected"_s, shown.all, selecting(3)},
        {u"menu"_s, shown.all, openRowMenu, kHeight, {120, 252}},
        {u"limit"_s, withManyFavorites(shown.all), reachFavoriteLimit},
        {u"pill-focused"_s, shown.all, focusAPill},
    };
}

QList<Shot> otherShots(const Contents &shown)
{
    const int whole = kListTop + kRowHeight * int(shown.all.size());
    QList<Shot> shots{
        {u"whole"_s, shown.all, selecting(3), whole},
        withTags({}, {u"empty"_s, {}}),
        withTags({}, {u"tags-none"_s, shown.all}),
        withTags({u"minutes of the club!"_s, u"季度报告与会议纪要"_s, u"insurance and claims"_s,
                  u"x"_s},
                 {u"tags-long"_s, shown.all}),
        withTags(SampleHistory::numberedTags(15), {u"tags-many"_s, shown.all}),
        {u"search"_s, shown.found, [word = shown.word](auto &window) { type(window, word); }},
        {u"search-nothing"_s, shown.all,
         [word = shown.wordOfNothing](auto &window) { type(window, word); }},
        {u"tag"_s, shown.tagged, choosing(6)},
        {u"overflow-menu"_s, shown.tagOfMenu,
         [tag = shown.menuTag](auto &window) { openOverflowMenu(window, tag); }, kHeight,
         {220, 104}},
        {u"pinned"_s, shown.all, [](auto &window) { window.togglePin(); }},
        {u"pin-focused"_s, shown.all, focusThePin},
        {u"thumbnails"_s, PictureHistory::thumbnails()},
    };
    const char *const kinds[] = {"all", "text", "image", "file", "link", "favorite"};
    for (int i = 0; i < int(std::size(kinds)); ++i)
        shots.append({u"filter-"_s + QLatin1StringView(kinds[i]), shown.all, choosing(i)});
    return shots;
}

/// Colours the whole screen, so that what shines through a window is known.
class Backdrop : public QWidget
{
public:
    Backdrop()
        : QWidget(nullptr, Qt::X11BypassWindowManagerHint | Qt::FramelessWindowHint
                      | Qt::WindowDoesNotAcceptFocus | Qt::WindowTransparentForInput)
    {
        setGeometry(screen()->geometry());
        show();
        lower();
    }

    void setDark(bool isDark)
    {
        m_color = isDark ? QColor(0x30, 0x34, 0x3B) : QColor(0xC6, 0xCA, 0xD1);
        update();
    }
    QColor color() const { return m_color; }

protected:
    void paintEvent(QPaintEvent *) override { QPainter(this).fillRect(rect(), m_color); }

private:
    QColor m_color;
};

class Photographer
{
public:
    Photographer(const QString &directory, const QString &suffix, const QString &mode)
        : m_directory(directory)
        , m_suffix(suffix)
        , m_mode(mode)
    {
        QDir().mkpath(directory);
        m_stage.appearance.composited = mode != u"plain"_s;
        m_stage.appearance.highContrast = mode == u"contrast"_s;
        m_stage.appearance.reducedMotion = true;
    }

    /// All of them if \a only is empty.
    void takeAll(const QStringList &only)
    {
        for (const AppLanguage language : {AppLanguage::English, AppLanguage::Chinese}) {
            setLanguage(language);
            const Contents shown = contents(language);
            for (const bool isDark : {false, true}) {
                setDark(isDark);
                for (const Shot &shot : shots(shown)) {
                    if (only.isEmpty() || only.contains(shot.name))
                        take(shot);
                }
            }
        }
    }

    bool hasFailed() const { return m_hasFailed; }

private:
    QList<Shot> shots(const Contents &shown) const
    {
        if (!m_stage.appearance.composited)
            return mainShots(shown);
        return mainShots(shown) + otherShots(shown);
    }

    void setLanguage(AppLanguage language)
    {
        m_language = std::make_unique<LanguageManager>(m_stage.defaults());
        m_language->setLanguage(language);
        m_language->install();
        m_languageName = language == AppLanguage::Chinese ? u"zh"_s : u"en"_s;
        m_stage.setTags(PictureHistory::tags(language));
        m_stage.setApplicationNames(PictureHistory::applicationNames(language));
    }

    void setDark(bool isDark)
    {
        m_stage.appearance.dark = isDark;
        m_backdrop.setDark(isDark);
    }

    QString path(const QString &name) const
    {
        QStringList words{u"history"_s, name};
        if (m_mode != u"composited"_s)
            words.append(m_mode);
        words.append(*m_stage.appearance.dark ? u"dark"_s : u"light"_s);
        words.append(m_languageName);
        return m_directory + u'/' + words.join(u'-') + m_suffix + u".png"_s;
    }

    void take(const Shot &shot)
    {
        m_stage.setTags(shot.hasTagsOfLanguage
                            ? PictureHistory::tags(m_language->currentLanguage())
                            : shot.tags);
        m_stage.defaults().set(u"ClipboardSearchWindowFrame"_s,
                               u"{{%1, %2}, {680, %3}}"_s.arg(kCorner.x()).arg(kCorner.y()).arg(
                                   shot.height));
        const auto window = m_stage.makeWindow(shot.items);
        window->show();
        static_cast<void>(QTest::qWaitForWindowActive(&window->shell()));
        const ClipboardItemList rows = shot.items.first(std::min<qsizetype>(shot.items.size(), 10));
        static_cast<void>(QTest::qWaitFor([&] { return m_stage.hasPictures(rows); }));
        m_stage.pass(kRest);
        shot.act(*window);
        m_stage.pass(kRest);
        const QRect place(window->shell().pos() - kCorner,
                          QSize(window->shell().width(), shot.height) + shot.margins);
        if (!QTest::qWaitFor([&] { return isDrawnWholly(*window, place); }))
            fail(path(shot.name), "the screen does not show what the windows have drawn");
        const QImage picture = screen(place);
        check(shot, picture);
        constexpr int kQuick = 80;
        if (!picture.save(path(shot.name), nullptr, kQuick))
            fail(path(shot.name), "cannot be written");
    }

    static QImage screen(const QRect &place)
    {
        return QGuiApplication::primaryScreen()
            ->grabWindow(0, place.x(), place.y(), place.width(), place.height())
            .toImage()
            .convertToFormat(QImage::Format_RGB32);
    }

    /// What the windows of the program, laid over each other on the backdrop, come to.
    QImage expected(HistoryWindow &window, const QRect &place) const
    {
        const qreal scale = window.shell().devicePixelRatioF();
        QImage canvas((QSizeF(place.size()) * scale).toSize(), QImage::Format_RGB32);
        canvas.fill(m_backdrop.color());
        QPainter painter(&canvas);
        drawWindow(painter, window.shell(), place);
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            if (widget != &window.shell() && widget != &m_backdrop && widget->isVisible())
                drawWindow(painter, *widget, place);
        }
        return canvas;
    }

    static void drawWindow(QPainter &painter, QWidget &widget, const QRect &place)
    {
        QPixmap drawn = widget.grab();
        const qreal scale = drawn.devicePixelRatio();
        drawn.setDevicePixelRatio(1);
        const auto onDevice = [scale](QPoint point) { return (QPointF(point) * scale).toPoint(); };
        painter.resetTransform();
        painter.translate(onDevice(widget.pos()) - onDevice(place.topLeft()));
        const QRegion shape = QTransform::fromScale(scale, scale).map(widget.mask());
        painter.setClipRegion(shape, shape.isEmpty() ? Qt::NoClip : Qt::ReplaceClip);
        painter.drawPixmap(0, 0, drawn);
    }

    bool isDrawnWholly(HistoryWindow &window, const QRect &place) const
    {
        auto &panel = *window.shell().findChild<HistoryPanel *>();
        const bool isThere = panel.presentationLayer().presentation() == Presentation();
        return isThere && isAlike(screen(place), expected(window, place));
    }

    /// The compositor's arithmetic is not ours.
    static bool isAlike(const QImage &shown, const QImage &wanted)
    {
        constexpr int kRounding = 3;
        if (shown.size() != wanted.size())
            return false;
        for (int y = 0; y < shown.height(); ++y) {
            const auto *a = shown.constScanLine(y);
            const auto *b = wanted.constScanLine(y);
            for (int i = 0; i < 4 * shown.width(); ++i) {
                if (i % 4 < 3 && std::abs(int(a[i]) - int(b[i])) > kRounding)
                    return false;
            }
        }
        return true;
    }

    /// What can be told about a picture without looking at it.
    void check(const Shot &shot, const QImage &picture)
    {
        const qreal scale = picture.devicePixelRatio();
        const QRectF window(kCorner, QSizeF(680, shot.height));
        const auto at = [&](QPointF point) {
            return picture.pixelColor((point * scale).toPoint());
        };
        const QPointF inside(1, 1);
        if (at(window.topLeft() + inside) != m_backdrop.color()
            || at(window.topRight() + QPointF(-2, 1)) != m_backdrop.color())
            fail(path(shot.name), "has corners that are not round");
        checkSeparator(shot, picture);
    }

    /// The line under the pills is as thick as the scale says, and as strong in all its rows.
    void checkSeparator(const Shot &shot, const QImage &picture)
    {
        const qreal scale = picture.devicePixelRatio();
        const int x = qRound((kCorner.x() + 100) * scale);
        const int middle = qRound((kCorner.y() + 99.5) * scale);
        const QRgb ground = picture.pixel(x, middle - 3);
        QList<QRgb> line;
        for (int y = middle - 3; y <= middle + 3; ++y) {
            if (picture.pixel(x, y) != ground)
                line.append(picture.pixel(x, y));
        }
        const bool isEven = std::ranges::all_of(line, [&](QRgb c) { return c == line.first(); });
        if (line.size() != std::max(1, qRound(scale)) || !isEven)
            fail(path(shot.name), "has a line under the pills that is not crisp");
    }

    void fail(const QString &path, const char *what)
    {
        std::printf("%s %s\n", qPrintable(path), what);
        m_hasFailed = true;
    }

    QString m_directory;
    QString m_suffix;
    QString m_mode;
    HistoryStage m_stage;
    Backdrop m_backdrop;
    std::unique_ptr<LanguageManager> m_language;
    QString m_languageName;
    bool m_hasFailed = false;
};

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 4)
        return EXIT_FAILURE;
    QApplication::setFont(QFont(u"Inter"_s));
    QApplication::setCursorFlashTime(0); // The caret stays.
    QCursor::setPos(0, 0); // Nothing is under the pointer.
    Photographer photographer(arguments.at(1), arguments.at(2), arguments.at(3));
    photographer.takeAll(arguments.value(4).split(u',', Qt::SkipEmptyParts));
    return photographer.hasFailed() ? EXIT_FAILURE : EXIT_SUCCESS;
}
