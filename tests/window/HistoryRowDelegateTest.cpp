#include "tests/window/TableFixture.h"

#include "appearance/InterfaceFont.h"
#include "appearance/SymbolImage.h"
#include "language/LanguageManager.h"
#include "window/HistoryRow.h"
#include "window/HistoryRowDelegate.h"

#include <QGuiApplication>
#include <QHelpEvent>
#include <QPainter>
#include <QTest>
#include <QTextLayout>
#include <QToolTip>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using SampleHistory::shared;
using Type = ClipboardContentType;

namespace {

constexpr QRect kRow(0, kRowHeight, 680, kRowHeight); // With room above and below.
constexpr int kTextLeft = 60;
constexpr int kTextRight = 542;

const SystemColors &colors()
{
    static const SystemColors light = systemColors(ColorScheme::Light);
    return light;
}

/// All that is painted within \a box.
QRect inkIn(const QImage &image, const QRect &box)
{
    constexpr int kLeast = 24; // Less is the rim of a letter.
    QRect ink;
    for (int y = box.top(); y <= box.bottom(); ++y) {
        for (int x = box.left(); x <= box.right(); ++x) {
            if (qAlpha(image.pixel(x, y)) >= kLeast)
                ink |= QRect(x, y, 1, 1);
        }
    }
    return ink;
}

/// The color in which something is painted, where it covers most.
QColor inkColor(const QImage &image, const QRect &box)
{
    QColor strongest(Qt::transparent);
    for (int y = box.top(); y <= box.bottom(); ++y) {
        for (int x = box.left(); x <= box.right(); ++x) {
            if (image.pixelColor(x, y).alpha() > strongest.alpha())
                strongest = image.pixelColor(x, y);
        }
    }
    return strongest;
}

bool isNear(const QColor &color, const QColor &wanted)
{
    constexpr int kRounding = 3;
    return std::abs(color.red() - wanted.red()) <= kRounding
        && std::abs(color.green() - wanted.green()) <= kRounding
        && std::abs(color.blue() - wanted.blue()) <= kRounding
        && std::abs(color.alpha() - wanted.alpha()) <= kRounding;
}

QRect contentBand() { return {55, kRow.top() + 16, 545 - 55, 24}; }
QRect metaBand() { return {55, kRow.top() + 39, 545 - 55, 15}; }
QRect timeBand() { return {548, kRow.top() + 26, 80, 20}; }

} // namespace

class HistoryRowDelegateTest : public QObject, private TableFixture
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { tearDownTable(); }

    void eachTypeHasItsSymbol_data();
    void eachTypeHasItsSymbol();
    void blanksAloneShowTheirTypeInTheSecondaryColor();
    void aPlaceholderOnASelectedRowIsFainterThanAText();
    void aSelectedRowTurnsTheFavoriteStarWhite();
    void theGroundIsAsStrongAsItIsTold();
    void theStarTellsWhatItDoes();
    void theBadgeStandsOverTheCornerOfTheIcon();
    void theTimeKeepsToItsColumn_data();
    void theTimeKeepsToItsColumn();

    void aTextBeginsAtTheLeftEdge_data();
    void aTextBeginsAtTheLeftEdge();
    void noTextMakesItsLineHop_data();
    void noTextMakesItsLineHop();
    void nothingIsPaintedOutsideTheRow();
    void marksKeepToTheirLine_data();
    void marksKeepToTheirLine();
    void aLongTextEndsBeforeTheTime_data();
    void aLongTextEndsBeforeTheTime();
    void aLongRightToLeftTextIsCutAtItsOwnEnd();
    void signsWithoutWidthTakeNoRoom();
    void whatTurnsATextLeavesTheRestOfTheRow();
    void namesStandInTheirOrder_data();
    void namesStandInTheirOrder();

private:
    QImage paint(const ClipboardItem &item, const RowState &state = {})
    {
        QImage image(QSize(kRow.width(), 3 * kRow.height()), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        m_delegate->paintRow(painter, kRow, shared(item), state);
        painter.end();
        return image.convertToFormat(QImage::Format_ARGB32);
    }
    QImage paint(const QString &text) { return paint(SampleHistory::textItem(text)); }

    std::unique_ptr<HistoryRowCache> m_rows;
    std::unique_ptr<HistoryRowDelegate> m_delegate;
};

void HistoryRowDelegateTest::init()
{
    setUpTable();
    m_rows = std::make_unique<HistoryRowCache>(*m_names, *m_clock);
    m_delegate = std::make_unique<HistoryRowDelegate>(*m_rows, *m_pictures, 18);
    m_delegate->setColors(colors());
}

void HistoryRowDelegateTest::eachTypeHasItsSymbol_data()
{
    QTest::addColumn<Type>("type");
    QTest::addColumn<QString>("symbol");
    QTest::addColumn<QColor>("color");
    QTest::newRow("text") << Type::Text << u"doc.text"_s << colors().secondaryLabelColor;
    QTest::newRow("picture that is not there") << Type::Image << u"photo"_s
                                               << colors().systemBlueColor;
    QTest::newRow("file without a path") << Type::File << u"doc"_s << colors().secondaryLabelColor;
    QTest::newRow("link") << Type::Url << u"link"_s << colors().systemBlueColor;
    QTest::newRow("mixed") << Type::Mixed << u"doc.on.doc"_s << colors().systemPurpleColor;
}

void HistoryRowDelegateTest::eachTypeHasItsSymbol()
{
    QFETCH(const Type, type);
    QFETCH(const QString, symbol);
    QFETCH(const QColor, color);
    const QRect icon(16, kRow.top() + 20, 32, 32);
    const auto expected = [&](const QColor &tint) {
        QImage image(kRow.width(), 3 * kRow.height(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        drawSymbol(painter, icon, {symbol, 24}, tint);
        painter.end();
        return image.convertToFormat(QImage::Format_ARGB32).copy(icon);
    };
    const ClipboardItem item = SampleHistory::item(type);
    QCOMPARE(paint(item).copy(icon), expected(color));
    QCOMPARE(paint(item, {.isSelected = true}).copy(icon), expected(Qt::white));
}

void HistoryRowDelegateTest::blanksAloneShowTheirTypeInTheSecondaryColor()
{
    const QColor placeholder = inkColor(paint(u"    "_s), contentBand());
    QVERIFY2(isNear(placeholder, colors().secondaryLabelColor), qPrintable(placeholder.name()));
    const QColor text = inkColor(paint(u"Text"_s), contentBand());
    QVERIFY2(isNear(text, colors().labelColor), qPrintable(text.name()));
    QCOMPARE(inkIn(paint(u"    "_s), contentBand()), inkIn(paint(u"Text"_s), contentBand()));
}

void HistoryRowDelegateTest::aPlaceholderOnASelectedRowIsFainterThanAText()
{
    const auto contentColor = [this](const QString &text) {
        return inkColor(paint(SampleHistory::textItem(text), {.isSelected = true}), contentBand());
    };
    QVERIFY(isNear(contentColor(u"Text"_s), Qt::white));
    QVERIFY(isNear(contentColor(u"    "_s), withAlpha(Qt::white, 0.7)));
}

void HistoryRowDelegateTest::aSelectedRowTurnsTheFavoriteStarWhite()
{
    ClipboardItem item = SampleHistory::textItem(u"x"_s);
    item.isFavorite = true;
    const QPoint star(651, kRow.top() + 36);
    QCOMPARE(paint(item).pixelColor(star), colors().controlAccentColor);
    QCOMPARE(paint(item, {.isSelected = true}).pixelColor(star), QColor(Qt::white));
}

void HistoryRowDelegateTest::theGroundIsAsStrongAsItIsTold()
{
    const ClipboardItem item = SampleHistory::textItem(u"x"_s);
    const QPoint ground(340, kRow.top() + 60);
    for (const qreal opacity : {0.0, 0.25, 0.5, 1.0}) {
        const QImage image = paint(item, {.groundOpacity = opacity});
        QVERIFY(std::abs(image.pixelColor(ground).alphaF() - opacity) < 0.01);
    }
    // What stands on it is as strong as ever.
    const QImage faint = paint(item, {.groundOpacity = 0.1});
    QVERIFY(isNear(inkColor(faint, contentBand()), inkColor(paint(item), contentBand())));
    QCOMPARE(paint(item, {.groundOpacity = 1}).pixelColor(ground), colors().selectionColor);
}

void HistoryRowDelegateTest::theStarTellsWhatItDoes()
{
    ClipboardItem favorite = SampleHistory::textItem(u"kept"_s);
    favorite.isFavorite = true;
    make({shared(favorite), shared(SampleHistory::textItem(u"x"_s))});
    const auto tipAt = [this](QPoint position) {
        QHelpEvent event(QEvent::ToolTip, position, m_view->viewport()->mapToGlobal(position));
        QCoreApplication::sendEvent(m_view->viewport(), &event);
        return QToolTip::text();
    };
    QCOMPARE(tipAt(starOf(0)), u"Unfavorite"_s);
    QCOMPARE(tipAt(starOf(1)), u"Favorite"_s);
    tipAt(contentOf(1));
    QTRY_VERIFY(!QToolTip::isVisible());
}

void HistoryRowDelegateTest::theBadgeStandsOverTheCornerOfTheIcon()
{
    m_icons->applications[u"org.example.Red"_s]
        = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"48\" height=\"48\">"
          "<rect width=\"48\" height=\"48\" fill=\"#ff0000\"/></svg>";
    ClipboardItem item = SampleHistory::textItem(u"x"_s);
    item.sourceAppBundleID = u"org.example.Red"_s;
    QTRY_VERIFY(!m_pictures->source(item, 1).isNull());
    const QImage image = paint(item);
    const QRect badge(37, kRow.top() + 41, 14, 14);
    const QRect icon = badge.adjusted(1, 1, -1, -1);
    const QPoint middle = badge.topLeft() + QPoint(7, 7);
    const auto colorAt = [&](int x, int y) { return image.pixelColor(x, y); };
    for (const int x : {badge.left(), badge.right()})
        QCOMPARE(colorAt(x, middle.y()), colors().windowBackgroundColor);
    for (const int y : {badge.top(), badge.bottom()})
        QCOMPARE(colorAt(middle.x(), y), colors().windowBackgroundColor);
    for (const int x : {icon.left(), icon.right()})
        QCOMPARE(colorAt(x, middle.y()), QColor(Qt::red));
    for (const int y : {icon.top(), icon.bottom()})
        QCOMPARE(colorAt(middle.x(), y), QColor(Qt::red));
    QCOMPARE(colorAt(badge.right() + 1, middle.y()).alpha(), 0);
    QCOMPARE(colorAt(middle.x(), badge.bottom() + 1).alpha(), 0);
}

void HistoryRowDelegateTest::theTimeKeepsToItsColumn_data()
{
    QTest::addColumn<AppLanguage>("language");
    QTest::addColumn<qreal>("textScale");
    QTest::addColumn<QString>("family");
    for (const AppLanguage language : {AppLanguage::English, AppLanguage::Chinese}) {
        for (const char *const family : {"DejaVu Sans", "DejaVu Sans Mono"}) {
            for (const double scale : {1.0, 1.15, 1.3}) {
                QTest::addRow("%s, %s, texts of %.2f",
                              language == AppLanguage::English ? "English" : "Chinese", family,
                              scale)
                    << language << scale << QString::fromLatin1(family);
            }
        }
    }
}

void HistoryRowDelegateTest::theTimeKeepsToItsColumn()
{
    QFETCH(const AppLanguage, language);
    QFETCH(const qreal, textScale);
    QFETCH(const QString, family);
    LanguageManager manager(*m_defaults);
    manager.setLanguage(language);
    manager.install();
    const QFont former = QGuiApplication::font();
    const auto restore = qScopeGuard([&] {
        QGuiApplication::setFont(former);
        setInterfaceTextScale(1);
    });
    QGuiApplication::setFont(QFont(family));
    QVERIFY(QFontInfo(QFont(family)).family() == family);
    setInterfaceTextScale(textScale);
    const QRect column(542, kRow.top() + 20, 92, 32); // As far as the star.
    for (const std::chrono::seconds age :
         {0s, 59s, 3540s, 23 * 3600s, 24 * 3600s, 6 * 86400s, 29 * 86400s, 364 * 86400s,
          20 * 365 * 86400s}) {
        const QRect ink = inkIn(paint(SampleHistory::textItem(u"x"_s, age)), column);
        QVERIFY2(ink.left() >= 549 && ink.right() <= 626, qPrintable(QString::number(ink.left())));
        QVERIFY(ink.right() > 620);
    }
    // What has room is as large as it is wanted.
    const QImage shortTime = paint(SampleHistory::textItem(u"x"_s));
    const QFont font = interfaceFont(11);
    const QString word = language == AppLanguage::English ? u"now"_s : u"现在"_s;
    const int width = qRound(QFontMetricsF(font).horizontalAdvance(word));
    QVERIFY(qAbs(inkIn(shortTime, column).width() - width) <= 3);
}

void HistoryRowDelegateTest::aTextBeginsAtTheLeftEdge_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("Latin") << u"Hamburg"_s;
    QTest::newRow("Chinese") << u"周五下午三点"_s;
    QTest::newRow("Arabic") << u"شكراً جزيلاً"_s;
    QTest::newRow("Hebrew") << u"שלום עולם"_s;
    QTest::newRow("long Hebrew") << QString(u"שלום עולם "_s).repeated(12);
    QTest::newRow("turned Latin") << u"\u202EHamburg"_s;
    QTest::newRow("an emoji of several") << u"👨‍👩‍👧‍👦"_s;
    QTest::newRow("a flag") << u"🇨🇭"_s;
    QTest::newRow("signs without width first") << u"\u200B\uFEFF\u2060Hamburg"_s;
    QTest::newRow("heaps of marks") << u"e"_s + QString(40, QChar(0x301));
    QTest::newRow("a surrogate alone") << QString(QChar(0xD83D)) + u"Hamburg"_s;
}

void HistoryRowDelegateTest::aTextBeginsAtTheLeftEdge()
{
    QFETCH(const QString, text);
    const QRect ink = inkIn(paint(text), contentBand());
    QVERIFY2(ink.left() >= kTextLeft - 1 && ink.left() <= kTextLeft + 3,
             qPrintable(QString::number(ink.left())));
}

void HistoryRowDelegateTest::noTextMakesItsLineHop_data()
{
    QTest::addColumn<QString>("tail");
    QTest::newRow("Chinese") << u" 周五下午"_s;
    QTest::newRow("Arabic") << u" شكراً"_s;
    QTest::newRow("an emoji of several") << u" 👨‍👩‍👧‍👦"_s;
    QTest::newRow("a flag") << u" 🇨🇭"_s;
    QTest::newRow("heaps of marks") << u" xxxxx Z"_s + QString(20, QChar(0x301))
            + QString(20, QChar(0x330));
    QTest::newRow("tall signs") << u" xxxxx ﷽ 𒐫 ꧅"_s;
    QTest::newRow("controls") << u" \u0001\u001b\u007f"_s;
}

void HistoryRowDelegateTest::noTextMakesItsLineHop()
{
    QFETCH(const QString, tail);
    const QRect letter(kTextLeft, kRow.top(), 10, 38);
    const QRect meta(kTextLeft, kRow.top() + 39, 24, 15);
    const QImage plain = paint(u"H"_s);
    const QImage withTail = paint(u"H"_s + tail);
    QVERIFY(inkIn(plain, letter).height() > 8);
    QCOMPARE(withTail.copy(letter), plain.copy(letter));
    QCOMPARE(withTail.copy(meta), plain.copy(meta));
}

void HistoryRowDelegateTest::nothingIsPaintedOutsideTheRow()
{
    const QString marks = QString(30, QChar(0x301)) + QString(30, QChar(0x330));
    ClipboardItem item = SampleHistory::textItem(u"Z"_s + marks);
    item.tags = {u"Z"_s + marks};
    const QImage image = paint(item, {.isSelected = true, .groundOpacity = 1, .starScale = 1.3});
    QCOMPARE(inkIn(image, image.rect() - QMargins(0, 0, 0, 2 * kRowHeight)), QRect());
    QCOMPARE(inkIn(image, image.rect() - QMargins(0, 2 * kRowHeight, 0, 0)), QRect());
}

void HistoryRowDelegateTest::marksKeepToTheirLine_data()
{
    QTest::addColumn<qreal>("textScale");
    QTest::newRow("usual") << 1.0;
    QTest::newRow("large texts") << 1.3;
}

void HistoryRowDelegateTest::marksKeepToTheirLine()
{
    QFETCH(const qreal, textScale);
    setInterfaceTextScale(textScale);
    const auto restore = qScopeGuard([] { setInterfaceTextScale(1); });
    const QString marks = QString(30, QChar(0x301)) + QString(30, QChar(0x330));
    const auto tagged = [](const QString &text, const QString &tag) {
        ClipboardItem item = SampleHistory::textItem(text);
        item.tags = {tag};
        return item;
    };
    const QImage plain = paint(tagged(u"ÄÅgjpqy"_s, u"ÄÅgjpqy"_s));
    const QImage markedTag = paint(tagged(u"ÄÅgjpqy"_s, u"Z"_s + marks));
    const QImage markedText = paint(tagged(u"Z"_s + marks, u"ÄÅgjpqy"_s));
    const QRect upper(55, kRow.top(), 490, 38);
    const QRect lower(55, kRow.top() + 39, 490, 33); // One between the two is of both.
    QCOMPARE(markedTag.copy(upper), plain.copy(upper));
    QCOMPARE(markedText.copy(lower), plain.copy(lower));
    // They go on to the border.
    QCOMPARE(inkIn(markedTag, lower).top(), lower.top());
    QCOMPARE(inkIn(markedText, upper).bottom(), upper.bottom());
}

void HistoryRowDelegateTest::aLongTextEndsBeforeTheTime_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("a word of 10,000 letters") << QString(10'000, u'w');
    QTest::newRow("Chinese") << QString(10'000, u'字');
    QTest::newRow("Hebrew") << QString(10'000, u'ש');
    QTest::newRow("marks") << QString(u"e\u0301\u0302\u0303"_s).repeated(10'000);
    QTest::newRow("emoji") << QString(u"👨‍👩‍👧‍👦"_s).repeated(1'000);
}

void HistoryRowDelegateTest::aLongTextEndsBeforeTheTime()
{
    QFETCH(const QString, text);
    const QImage image = paint(text);
    const QRect ink = inkIn(image, contentBand().adjusted(0, 0, 3, 0));
    QVERIFY2(ink.right() > kTextRight - 30 && ink.right() <= kTextRight,
             qPrintable(QString::number(ink.right())));
    QCOMPARE(image.copy(timeBand()), paint(u"x"_s).copy(timeBand()));
}

void HistoryRowDelegateTest::aLongRightToLeftTextIsCutAtItsOwnEnd()
{
    const QImage image = paint(QString(u"שלום עולם "_s).repeated(12));
    // The ellipsis stands on the base line, and is no higher than dots are.
    const QRect dots = inkIn(image, QRect(kTextLeft - 2, kRow.top() + 16, 11, 24));
    QVERIFY2(!dots.isEmpty() && dots.height() <= 3, qPrintable(QString::number(dots.height())));
    QVERIFY(inkIn(image, contentBand()).right() > kTextRight - 30);
}

void HistoryRowDelegateTest::signsWithoutWidthTakeNoRoom()
{
    QCOMPARE(inkIn(paint(u"H\u200Ba\uFEFFm\u2060b\u00ADu\u200Er\u200Cg"_s), contentBand()),
             inkIn(paint(u"Hamburg"_s), contentBand()));
}

void HistoryRowDelegateTest::whatTurnsATextLeavesTheRestOfTheRow()
{
    const auto tagged = [this](const QString &text, const QString &tag) {
        ClipboardItem item = SampleHistory::textItem(text);
        item.tags = {tag, u"two"_s, u"three"_s};
        return paint(item);
    };
    const QImage plain = tagged(u"Hamburg"_s, u"one"_s);
    QVERIFY(inkIn(plain, metaBand()).width() > 50);
    QCOMPARE(tagged(u"Hamburg"_s, u"\u202Eone"_s), plain);
    QCOMPARE(tagged(u"Hamburg"_s, u"\u2067one\u202D"_s), plain);
    const QImage turned = tagged(u"\u202EHamburg \u2067x"_s, u"one"_s);
    QVERIFY(turned.copy(contentBand()) != plain.copy(contentBand()));
    QCOMPARE(turned.copy(metaBand()), plain.copy(metaBand()));
    QCOMPARE(turned.copy(timeBand()), plain.copy(timeBand()));
}

void HistoryRowDelegateTest::namesStandInTheirOrder_data()
{
    QTest::addColumn<QStringList>("tags");
    QTest::newRow("Latin") << QStringList{u"one"_s, u"two"_s, u"x"_s};
    QTest::newRow("Hebrew") << QStringList{u"עברית"_s, u"עוד"_s, u"x"_s};
    QTest::newRow("Arabic and figures") << QStringList{u"سفر"_s, u"2026"_s, u"x"_s};
    QTest::newRow("turned") << QStringList{u"\u202Eone"_s, u"\u2067עוד"_s, u"x"_s};
}

/// As they are laid out, not as they are stored.
void HistoryRowDelegateTest::namesStandInTheirOrder()
{
    QFETCH(const QStringList, tags);
    ClipboardItem item = SampleHistory::textItem(u"x"_s);
    item.tags = tags;
    const QString meta = m_rows->row(shared(item)).meta;
    QTextLayout layout(meta);
    layout.beginLayout();
    const QTextLine line = layout.createLine();
    layout.endLayout();
    qreal before = -1;
    for (qsizetype dot = meta.indexOf(u'·'); dot >= 0; dot = meta.indexOf(u'·', dot + 1)) {
        const qreal place = line.cursorToX(int(dot));
        QVERIFY(place > before);
        before = place;
    }
    QVERIFY(meta.endsWith(u"+1"_s));
    QVERIFY(line.cursorToX(int(meta.size()) - 2) > before);
    QVERIFY(line.cursorToX(int(meta.size()) - 1) > line.cursorToX(int(meta.size()) - 2));
}

QTEST_MAIN(HistoryRowDelegateTest)
#include "HistoryRowDelegateTest.moc"
