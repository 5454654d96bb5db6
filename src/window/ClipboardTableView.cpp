#include "window/ClipboardTableView.h"

#include "widgets/AccessibleFactory.h"
#include "window/ClipboardTableViewAccessible.h"
#include "window/HistoryListModel.h"
#include "window/HistoryRowDelegate.h"
#include "window/OverlayScroller.h"
#include "window/RowLayout.h"

#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>

namespace {

constexpr int kScrollStep = kRowHeight / 2;

} // namespace

ClipboardTableView::ClipboardTableView(Scheduler &scheduler, const Clock &clock, int scrollerInset,
                                       QWidget *parent)
    : QListView(parent)
    , m_keys(*this)
    , m_selectionFade(*this, scheduler, clock)
    , m_stars(*this, scheduler, clock)
    , m_rowPainter(*this, m_selectionFade, m_stars)
    , m_scroller(new OverlayScroller(scheduler, *verticalScrollBar(), this))
    , m_scrollerInset(scrollerInset)
{
    installAccessible<ClipboardTableView, ClipboardTableViewAccessible>();
    setFrameShape(QFrame::NoFrame);
    setUniformItemSizes(true);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setMouseTracking(true);
    m_stars.onClicked = [this](int row) { emit starClicked(row); };
    viewport()->setAutoFillBackground(false);
}

void ClipboardTableView::setRowDelegate(HistoryRowDelegate *delegate)
{
    m_rowDelegate = delegate;
    m_rowDelegate->setColors(m_colors);
    m_rowPainter.setDelegate(delegate);
    setItemDelegate(delegate);
}

void ClipboardTableView::setColors(const SystemColors &colors)
{
    m_colors = colors;
    if (m_rowDelegate)
        m_rowDelegate->setColors(colors);
    m_scroller->setColors(colors);
    viewport()->update();
}

void ClipboardTableView::setMotionReduced(bool isReduced)
{
    m_selectionFade.setMotionReduced(isReduced);
    m_stars.setMotionReduced(isReduced);
}

void ClipboardTableView::setEmptyText(const QString &title, const QString &note)
{
    const EmptyListText text{title, note};
    if (text == m_emptyText)
        return;
    m_emptyText = text;
    ClipboardTableViewAccessible::tellEmptyText(*this);
    viewport()->update();
}

const ClipboardItemList &ClipboardTableView::items() const
{
    static const ClipboardItemList none;
    const auto *rows = static_cast<const HistoryListModel *>(model());
    return rows ? rows->items() : none;
}

int ClipboardTableView::selectedRow() const
{
    const QItemSelectionModel *selection = selectionModel();
    const QModelIndexList rows = selection ? selection->selectedIndexes() : QModelIndexList();
    return rows.isEmpty() ? -1 : rows.first().row();
}

void ClipboardTableView::selectRow(int row)
{
    selectionModel()->setCurrentIndex(model()->index(row, 0), QItemSelectionModel::ClearAndSelect);
}

void ClipboardTableView::selectRowInPlace(int row)
{
    setAutoScroll(false);
    selectRow(row);
    setAutoScroll(true);
}

void ClipboardTableView::deselectAll()
{
    selectionModel()->clear();
}

QRect ClipboardTableView::rowBox(int row) const
{
    return visualRect(model()->index(row, 0));
}

std::pair<int, int> ClipboardTableView::rowsInSight(int margin) const
{
    const int count = model() ? model()->rowCount() : 0;
    const int first = (verticalOffset() - margin) / kRowHeight;
    const int last = (verticalOffset() + viewport()->height() - 1 + margin) / kRowHeight;
    return {std::max(first, 0), std::min(last, count - 1)};
}

bool ClipboardTableView::updateRow(const QUuid &id)
{
    const int row = isVisible() ? rowInSight(id) : -1;
    if (row >= 0)
        viewport()->update(rowBox(row));
    return row >= 0;
}

/// What is worded anew is shown as it is.
void ClipboardTableView::dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                                     const QList<int> &roles)
{
    QListView::dataChanged(topLeft, bottomRight, roles);
    const auto [first, last] = rowsInSight();
    for (int row = std::max(first, topLeft.row()); row <= std::min(last, bottomRight.row()); ++row)
        m_selectionFade.finish(items().at(row)->id);
    ClipboardTableViewAccessible::tellChangedRows(*this, topLeft.row(), bottomRight.row());
}

void ClipboardTableView::reset()
{
    QListView::reset();
    m_selectionFade.finishAll();
    m_stars.finishPops();
}

void ClipboardTableView::rowsInserted(const QModelIndex &parent, int first, int last)
{
    QListView::rowsInserted(parent, first, last);
    ClipboardTableViewAccessible::tellNewRows(*this, first, last);
}

void ClipboardTableView::contextMenuEvent(QContextMenuEvent *event)
{
    // The key comes as a key press too, on every desktop.
    if (event->reason() != QContextMenuEvent::Keyboard)
        requestMenuAt(event->globalPos(), event->reason());
}

void ClipboardTableView::focusInEvent(QFocusEvent *event)
{
    QListView::focusInEvent(event);
    const bool isByTab = event->reason() == Qt::TabFocusReason
        || event->reason() == Qt::BacktabFocusReason;
    // The selection is all that shows where the focus is.
    if (isByTab && m_acceptsInput && selectedRow() < 0 && !items().isEmpty())
        selectRowInPlace(firstWholeRowInSight());
}

void ClipboardTableView::keyPressEvent(QKeyEvent *event)
{
    if (!m_keys.press(*event))
        QListView::keyPressEvent(event);
}

void ClipboardTableView::requestMenuAt(const QPoint &position, QContextMenuEvent::Reason reason)
{
    const QPoint place = viewport()->mapFromGlobal(position);
    const QModelIndex index = indexAt(place);
    if (!m_acceptsInput || !index.isValid() || !viewport()->rect().contains(place))
        return;
    selectRowInPlace(index.row());
    emit menuRequested(index.row(), position, reason);
}

void ClipboardTableView::requestMenuAtSelectedRow()
{
    const int row = selectedRow();
    if (row < 0)
        return;
    const QModelIndex index = model()->index(row, 0);
    scrollTo(index);
    const RowLayout layout{QRectF(visualRect(index))};
    const QPointF corner(layout.content.left(), layout.selection.bottom());
    emit menuRequested(row, viewport()->mapToGlobal(corner.toPoint()),
                       QContextMenuEvent::Keyboard);
}

int ClipboardTableView::firstWholeRowInSight() const
{
    const auto [first, last] = rowsInSight();
    return rowBox(first).top() < 0 ? std::min(first + 1, last) : first;
}

void ClipboardTableView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const QPoint position = event->position().toPoint();
    // On a star it neither selects the row nor begins a drag.
    const bool isForStar = m_stars.press(position);
    m_pressedRow = isForStar ? QModelIndex() : indexAt(position);
    if (!isForStar)
        QListView::mousePressEvent(event);
}

void ClipboardTableView::mouseMoveEvent(QMouseEvent *event)
{
    if (m_stars.move(event->position().toPoint(), event->buttons()))
        return;
    if (event->buttons() == Qt::NoButton && event->position().x() >= m_scroller->x())
        m_scroller->flash();
    QListView::mouseMoveEvent(event);
}

void ClipboardTableView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !m_stars.release(event->position().toPoint()))
        QListView::mouseReleaseEvent(event);
}

void ClipboardTableView::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const QPoint position = event->position().toPoint();
    const QModelIndex index = indexAt(position);
    // Two quick clicks on a star are two clicks, and so are those between which the rows have moved
    // or the pointer has come to the next row.
    if (m_stars.areAt(position) || !index.isValid() || m_pressedRow != index) {
        mousePressEvent(event);
        return;
    }
    QListView::mouseDoubleClickEvent(event);
    emit rowActivated(index.row());
}

void ClipboardTableView::paintEvent(QPaintEvent *event)
{
    QPainter painter(viewport());
    m_rowPainter.paint(painter, event->rect());
    if (items().isEmpty())
        drawEmptyListText(painter, viewport()->rect(), m_emptyText, m_colors);
}

void ClipboardTableView::resizeEvent(QResizeEvent *event)
{
    QListView::resizeEvent(event);
    placeScroller();
}

void ClipboardTableView::selectionChanged(const QItemSelection &selected,
                                          const QItemSelection &deselected)
{
    QListView::selectionChanged(selected, deselected);
    if (!model())
        return;
    // The veil of the first row comes and goes with the selection.
    if (selected.isEmpty() || deselected.isEmpty())
        viewport()->update(rowBox(0));
    if (!selected.isEmpty() || !deselected.isEmpty())
        m_selectionFade.follow(selected, deselected);
}

void ClipboardTableView::updateGeometries()
{
    QListView::updateGeometries();
    verticalScrollBar()->setSingleStep(kScrollStep);
    placeScroller();
}

bool ClipboardTableView::viewportEvent(QEvent *event)
{
    if (event->type() == QEvent::Leave)
        m_stars.leave();
    const bool isPress = event->type() == QEvent::MouseButtonPress
        || event->type() == QEvent::MouseButtonDblClick;
    if (isPress && !m_acceptsInput) {
        m_pressedRow = QModelIndex();
        return true;
    }
    return QListView::viewportEvent(event);
}

int ClipboardTableView::rowInSight(const QUuid &id) const
{
    const auto [first, last] = rowsInSight();
    for (int row = first; row <= last; ++row) {
        if (items().at(row)->id == id)
            return row;
    }
    return -1;
}

void ClipboardTableView::placeScroller()
{
    m_scroller->setGeometry(width() - OverlayScroller::kLaneWidth, 0, OverlayScroller::kLaneWidth,
                            height() - m_scrollerInset);
}
