#include "window/HistoryPanel.h"

#include "appearance/FocusOutline.h"
#include "language/Localized.h"
#include "widgets/AccessibleFactory.h"
#include "window/ClipboardTableView.h"
#include "window/EdgeResizeView.h"
#include "window/FilterBarView.h"
#include "window/GlassContainerView.h"
#include "window/PinButton.h"
#include "window/SearchField.h"
#include "window/SeparatorLine.h"
#include "window/SpokenFocus.h"
#include "window/SymbolView.h"
#include "window/WindowDragView.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr QRect kSearchIcon(24, 15, 32, 32);
constexpr QPoint kSearchField(64, 18);
constexpr int kSearchFieldHeight = 36;
constexpr int kSearchFieldRight = 26; // The field's end runs under the pin button.
constexpr int kWideSearchFieldRight = 12;
constexpr int kPinButtonTop = 26;
constexpr int kPinButtonRight = 12;
constexpr int kPinButtonSide = 28;
constexpr int kFilterBarTop = 62;
constexpr int kFilterBarHeight = 32;
constexpr int kSeparatorTop = 99;
constexpr int kSeparatorInset = 24;
constexpr int kSearchAreaHeight = 100;

constexpr int kSearchIconSize = 24;
constexpr qreal kPinRadius = 8;
constexpr qreal kPillRadius = FilterButton::kHeight / 2.0;
// Where the scroller ends before the lower corner, as a share of the corner's radius.
constexpr qreal kScrollerInsetShare = 0.65;

} // namespace

HistoryPanel::HistoryPanel(const HistoryWindowStyle &style, const Workspace &workspace,
                           TagManager &tagManager, Scheduler &scheduler, const Clock &clock)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint)
    , m_style(style)
    , m_glassContainerView(new GlassContainerView(style, this))
    , m_presentationLayer(*m_glassContainerView)
{
    installAccessible<HistoryPanel, RoleAccessible<QAccessible::Window>>();
    setAttribute(Qt::WA_TranslucentBackground, style.isTranslucent);
    setAttribute(Qt::WA_QuitOnClose, false);
    m_glassContainerView->onGroundPainted = [this](QPainter &painter) { paintFocusRings(painter); };
    buildHead(workspace, tagManager, scheduler);
    buildList(scheduler, clock);
    buildHandles(workspace);
}

HistoryPanel::~HistoryPanel() = default;

void HistoryPanel::setColors(const SystemColors &colors)
{
    m_colors = colors;
    m_searchIcon->setColor(colors.secondaryLabelColor);
    m_searchField->setColors(colors);
    m_pinButton->setColors(colors);
    m_filterBar->setColors(colors);
    m_separatorLine->setColor(colors.separatorLineColor());
    m_tableView->setColors(colors);
    m_glassContainerView->setColors(colors);
    update();
}

void HistoryPanel::setBackgroundAlpha(qreal alpha)
{
    m_glassContainerView->setBackgroundAlpha(alpha);
}

void HistoryPanel::refreshLanguage()
{
    const QString title = localized(u"app.title"_s, u"Clipboard History"_s);
    const QString search = localized(u"search.placeholder"_s, u"Search"_s);
    setWindowTitle(title);
    m_searchIcon->setAccessibleName(search);
    m_tableView->setAccessibleName(title);
    m_filterBar->refreshTitles();
    m_pinButton->refreshLanguage();
}

void HistoryPanel::setPinButtonShown(bool isShown)
{
    m_isPinButtonShown = isShown;
    m_pinButton->setVisible(isShown);
    m_pinButton->setEnabled(isShown);
    layoutViews();
}

void HistoryPanel::setListShown(bool isShown)
{
    m_tableContainerView->setVisible(isShown);
}

void HistoryPanel::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() != QEvent::ActivationChange)
        return;
    // Who gives the focus has done with framing; from here on, moves are meant.
    m_placeWhenShown.reset();
    if (!isActiveWindow())
        emit deactivated();
}

void HistoryPanel::closeEvent(QCloseEvent *event)
{
    emit closeRequested();
    event->setAccepted(!isVisible());
}

bool HistoryPanel::event(QEvent *event)
{
    if (event->type() == QEvent::ApplicationPaletteChange)
        emit desktopColorsChanged();
    return QWidget::event(event);
}

void HistoryPanel::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier)
        emit cancelRequested();
    else
        QWidget::keyPressEvent(event);
}

void HistoryPanel::moveEvent(QMoveEvent *event)
{
    QWidget::moveEvent(event);
    const auto placeWhenShown = std::exchange(m_placeWhenShown, std::nullopt);
    // A window manager that puts its frame around the window tells of a place within the frame, and
    // keeps silent once the frame stands where the window was to be. Asking for the place once more
    // makes it tell the truth (ICCCM 4.1.5).
    if (placeWhenShown && event->spontaneous() && pos() != *placeWhenShown)
        move(*placeWhenShown);
}

void HistoryPanel::paintEvent(QPaintEvent *event)
{
    // Without translucency the ground keeps still while what stands on it comes and goes.
    if (m_style.isTranslucent)
        return;
    QPainter painter(this);
    painter.fillRect(event->rect(), m_colors.windowBackgroundColor);
    if (m_colors.isHighContrast)
        paintStrongEdge(painter);
}

void HistoryPanel::resizeEvent(QResizeEvent *)
{
    layoutViews();
    cutShape();
}

/// The order is that of the Tab key.
void HistoryPanel::buildHead(const Workspace &workspace, TagManager &tagManager,
                             Scheduler &scheduler)
{
    m_dragView = new WindowDragView(workspace, m_glassContainerView);
    m_dragView->setObjectName(u"windowDragView"_s);
    m_searchIcon = new SymbolView(
        {u"magnifyingglass"_s, kSearchIconSize, SymbolWeight::Semibold}, m_glassContainerView);
    m_searchIcon->setObjectName(u"searchIcon"_s);
    m_searchField = new SearchField(scheduler, m_glassContainerView);
    m_searchField->setObjectName(u"searchField"_s);
    m_filterBar = new FilterBarView(tagManager, m_glassContainerView);
    m_filterBar->setObjectName(u"filterBar"_s);
    m_pinButton = new PinButton(m_glassContainerView);
    m_pinButton->setObjectName(u"pinButton"_s);
    m_separatorLine = new SeparatorLine(m_glassContainerView);
    m_separatorLine->setObjectName(u"separatorLine"_s);
}

void HistoryPanel::buildList(Scheduler &scheduler, const Clock &clock)
{
    m_tableContainerView = new QWidget(m_glassContainerView);
    m_tableContainerView->setObjectName(u"tableContainerView"_s);
    const int scrollerInset = qRound(m_style.cornerRadius * kScrollerInsetShare);
    m_tableView = new ClipboardTableView(scheduler, clock, scrollerInset, m_tableContainerView);
    m_tableView->setObjectName(u"tableView"_s);
    m_spokenFocus = std::make_unique<SpokenFocus>(*m_searchField, *m_tableView, scheduler);
    connect(m_tableView, &ClipboardTableView::textKeyPressed, this, [this](QKeyEvent *event) {
        m_searchField->setFocus();
        QCoreApplication::sendEvent(m_searchField, event);
    });
}

void HistoryPanel::buildHandles(const Workspace &workspace)
{
    m_topResizeView
        = new EdgeResizeView(WindowFrame::Edge::Top, workspace, m_glassContainerView);
    m_topResizeView->setObjectName(u"topResizeView"_s);
    m_bottomResizeView
        = new EdgeResizeView(WindowFrame::Edge::Bottom, workspace, m_glassContainerView);
    m_bottomResizeView->setObjectName(u"bottomResizeView"_s);
}

void HistoryPanel::layoutViews()
{
    m_glassContainerView->setGeometry(rect());
    m_dragView->setGeometry(0, 0, width(), WindowDragView::kHeight);
    m_searchIcon->setGeometry(kSearchIcon);
    const int fieldRight = m_isPinButtonShown ? kSearchFieldRight : kWideSearchFieldRight;
    m_searchField->setGeometry(kSearchField.x(), kSearchField.y(),
                               width() - kSearchField.x() - fieldRight, kSearchFieldHeight);
    m_pinButton->setGeometry(width() - kPinButtonRight - kPinButtonSide, kPinButtonTop,
                             kPinButtonSide, kPinButtonSide);
    m_filterBar->setGeometry(0, kFilterBarTop, width(), kFilterBarHeight);
    m_separatorLine->setGeometry(kSeparatorInset, kSeparatorTop, width() - 2 * kSeparatorInset, 1);
    m_tableContainerView->setGeometry(0, kSearchAreaHeight, width(),
                                      height() - kSearchAreaHeight);
    m_tableView->setGeometry(m_tableContainerView->rect());
    m_topResizeView->setGeometry(0, 0, width(), EdgeResizeView::kHeight);
    m_bottomResizeView->setGeometry(0, height() - EdgeResizeView::kHeight, width(),
                                    EdgeResizeView::kHeight);
}

/// A window whose corners are cut has no line, unless its edge must be seen on any ground.
void HistoryPanel::paintStrongEdge(QPainter &painter) const
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), m_colors.windowLineColor);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_colors.windowBackgroundColor);
    const qreal radius = m_style.cornerRadius - kStrongLine;
    painter.drawRoundedRect(
        QRectF(rect()).adjusted(kStrongLine, kStrongLine, -kStrongLine, -kStrongLine), radius,
        radius);
}

void HistoryPanel::cutShape()
{
    if (m_style.isTranslucent)
        return;
    QPainterPath shape;
    shape.addRoundedRect(rect(), m_style.cornerRadius, m_style.cornerRadius);
    setMask(QRegion(shape.toFillPolygon().toPolygon()));
}

void HistoryPanel::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (!event->spontaneous())
        m_placeWhenShown = pos();
}

void HistoryPanel::wheelEvent(QWheelEvent *event)
{
    if (!onWheel || !onWheel(*event))
        QWidget::wheelEvent(event);
}

void HistoryPanel::paintFocusRings(QPainter &painter) const
{
    const QColor &ring = m_colors.controlAccentColor;
    if (m_pinButton->isFocusVisible())
        drawFocusOutline(painter, m_pinButton->geometry(), kPinRadius, ring);
    if (const FilterButton *pill = m_filterBar->focusedButton())
        drawFocusOutline(painter, pill->geometry().translated(m_filterBar->pos()), kPillRadius,
                         ring);
}
