#include "window/HistoryPanel.h"

#include "appearance/FocusOutline.h"
#include "language/Localized.h"
#include "widgets/InputMethod.h"
#include "window/ClipboardTableView.h"
#include "window/EdgeResizeView.h"
#include "window/FilterBarView.h"
#include "window/PinButton.h"
#include "window/SearchField.h"
#include "window/SeparatorLine.h"
#include "window/SpokenFocus.h"
#include "window/SymbolView.h"
#include "window/WindowDragView.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QPainter>

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

HistoryPanel::HistoryPanel(QWidget &window, const HistoryWindowStyle &style,
                           const Workspace &workspace, TagManager &tagManager,
                           Scheduler &scheduler, const Clock &clock)
    : GlassContainerView(style, &window)
    , m_presentationLayer(*this)
{
    buildHead(workspace, tagManager, scheduler);
    buildList(style, scheduler, clock);
    buildHandles(workspace);
}

HistoryPanel::~HistoryPanel() = default;

void HistoryPanel::setColors(const SystemColors &colors)
{
    GlassContainerView::setColors(colors);
    m_ringColor = colors.controlAccentColor;
    m_searchIcon->setColor(colors.secondaryLabelColor);
    m_searchField->setColors(colors);
    m_pinButton->setColors(colors);
    m_filterBar->setColors(colors);
    m_separatorLine->setColor(colors.separatorLineColor());
    m_tableView->setColors(colors);
}

void HistoryPanel::refreshLanguage()
{
    const QString title = localized(u"app.title"_s, u"Clipboard History"_s);
    const QString search = localized(u"search.placeholder"_s, u"Search"_s);
    window()->setWindowTitle(title);
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

void HistoryPanel::resizeEvent(QResizeEvent *event)
{
    GlassContainerView::resizeEvent(event);
    layoutViews();
}

/// The order is that of the Tab key.
void HistoryPanel::buildHead(const Workspace &workspace, TagManager &tagManager,
                             Scheduler &scheduler)
{
    m_dragView = new WindowDragView(workspace, this);
    m_dragView->setObjectName(u"windowDragView"_s);
    m_searchIcon = new SymbolView(
        {u"magnifyingglass"_s, kSearchIconSize, SymbolWeight::Semibold}, this);
    m_searchIcon->setObjectName(u"searchIcon"_s);
    m_searchField = new SearchField(scheduler, this);
    m_searchField->setObjectName(u"searchField"_s);
    m_filterBar = new FilterBarView(tagManager, this);
    m_filterBar->setObjectName(u"filterBar"_s);
    m_pinButton = new PinButton(this);
    m_pinButton->setObjectName(u"pinButton"_s);
    m_separatorLine = new SeparatorLine(this);
    m_separatorLine->setObjectName(u"separatorLine"_s);
}

void HistoryPanel::buildList(const HistoryWindowStyle &style, Scheduler &scheduler,
                             const Clock &clock)
{
    m_tableContainerView = new QWidget(this);
    m_tableContainerView->setObjectName(u"tableContainerView"_s);
    const int scrollerInset = qRound(style.cornerRadius * kScrollerInsetShare);
    m_tableView = new ClipboardTableView(scheduler, clock, scrollerInset, m_tableContainerView);
    m_tableView->setObjectName(u"tableView"_s);
    m_spokenFocus = std::make_unique<SpokenFocus>(*m_searchField, *m_tableView, scheduler);
    connect(m_tableView, &ClipboardTableView::textKeyPressed, this, [this](QKeyEvent *event) {
        m_searchField->setFocus();
        if (!InputMethod::takes(*event))
            QCoreApplication::sendEvent(m_searchField, event);
    });
}

void HistoryPanel::buildHandles(const Workspace &workspace)
{
    m_topResizeView
        = new EdgeResizeView(WindowFrame::Edge::Top, workspace, this);
    m_topResizeView->setObjectName(u"topResizeView"_s);
    m_bottomResizeView
        = new EdgeResizeView(WindowFrame::Edge::Bottom, workspace, this);
    m_bottomResizeView->setObjectName(u"bottomResizeView"_s);
}

void HistoryPanel::layoutViews()
{
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

void HistoryPanel::wheelEvent(QWheelEvent *event)
{
    if (!onWheel || !onWheel(*event))
        GlassContainerView::wheelEvent(event);
}

void HistoryPanel::paintOnGround(QPainter &painter) const
{
    if (m_pinButton->isFocusVisible())
        drawFocusOutline(painter, m_pinButton->geometry(), kPinRadius, m_ringColor);
    if (const FilterButton *pill = m_filterBar->focusedButton())
        drawFocusOutline(painter, pill->geometry().translated(m_filterBar->pos()), kPillRadius,
                         m_ringColor);
}
