#pragma once

#include "appearance/SystemColors.h"
#include "core/ClipboardItem.h"
#include "window/EmptyListText.h"
#include "window/ListKeys.h"
#include "window/RowPainter.h"
#include "window/RowSelectionFade.h"
#include "window/RowStars.h"

#include <QContextMenuEvent>
#include <QListView>
#include <QPersistentModelIndex>

#include <functional>

class HistoryRowDelegate;
class OverlayScroller;

/// The list of the history: rows of one height, at most one of them selected.
class ClipboardTableView : public QListView
{
    Q_OBJECT

public:
    /// Scheduler and clock must outlive the view. The scroller stays \a scrollerInset away from the
    /// lower end, where the window is round.
    ClipboardTableView(Scheduler &scheduler, const Clock &clock, int scrollerInset,
                       QWidget *parent = nullptr);

    void setRowDelegate(HistoryRowDelegate *delegate);

    /// Tells how the rows are painted while they come and go. Null takes it away; it must not be
    /// gone before.
    void setRowTransition(RowTransition *transition) { m_rowPainter.setTransition(transition); }
    RowTransition *rowTransition() const { return m_rowPainter.transition(); }

    void setColors(const SystemColors &colors);

    /// Whether selections and stars do without their springs.
    void setMotionReduced(bool isReduced);

    /// What stands in the place of the rows while there are none. The note may be empty.
    void setEmptyText(const QString &title, const QString &note);
    const QString &emptyTitle() const { return m_emptyText.title; }
    const QString &emptyNote() const { return m_emptyText.note; }

    /// The entries of the rows.
    const ClipboardItemList &items() const;

    /// The selected row, -1 if there is none.
    int selectedRow() const;
    void selectRow(int row);
    /// Without moving the list.
    void selectRowInPlace(int row);
    void deselectAll();

    /// Shows each row as it is: selected or not.
    void finishSelectionFade() { m_selectionFade.finishAll(); }

    /// While it accepts none, keys but Esc and presses do nothing. Unlike a disabled widget it keeps
    /// the focus.
    bool acceptsInput() const { return m_acceptsInput; }
    void setAcceptsInput(bool acceptsInput) { m_acceptsInput = acceptsInput; }

    /// Selects the row at \a position of the screen and asks for its menu; nothing elsewhere.
    void requestMenuAt(const QPoint &position, QContextMenuEvent::Reason reason);
    /// As the menu key does.
    void requestMenuAtSelectedRow();

    /// As a click on the star of \a row does.
    void clickStar(int row) { m_stars.click(row); }

    QRect rowBox(int row) const; ///< In the viewport.
    QPixmap pictureOfRow(int row) const { return m_rowPainter.picture(row); }

    /// The first and the last row of which something is in sight, or is within \a margin above or
    /// below; an empty range if there is none.
    std::pair<int, int> rowsInSight(int margin = 0) const;

    /// Has the row of an entry drawn again. False if it is not in sight.
    bool updateRow(const QUuid &id);

    /// Whether the selected row counts as what has the focus for those who hear it, which it also
    /// does while the keys of another view move through the list.
    bool isSpokenFocus() const { return m_isSpokenFocus || hasFocus(); }
    void setSpokenFocus(bool isSpokenFocus) { m_isSpokenFocus = isSpokenFocus; }

    void keyboardSearch(const QString &) override {}

    /// Space on the selected row; false if the key is not wanted.
    std::function<bool(int row)> onSpace;

public slots:
    void dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                     const QList<int> &roles) override;
    void reset() override;

signals:
    void enterPressed();
    /// A key that writes something; the list has no use for it.
    void textKeyPressed(QKeyEvent *event);
    void deletePressed();
    /// The menu of \a row, which is selected by now, is to open at \a position of the screen.
    void menuRequested(int row, const QPoint &position, QContextMenuEvent::Reason reason);
    void rowActivated(int row); ///< By a double click, or by an assistive program.
    void starClicked(int row);

protected:
    void rowsInserted(const QModelIndex &parent, int first, int last) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void selectionChanged(const QItemSelection &selected,
                          const QItemSelection &deselected) override;
    void updateGeometries() override;
    bool viewportEvent(QEvent *event) override;

private:
    /// The row of an entry; -1 unless it is in sight.
    int rowInSight(const QUuid &id) const;
    int firstWholeRowInSight() const;
    void placeScroller();

    SystemColors m_colors;
    HistoryRowDelegate *m_rowDelegate = nullptr;
    ListKeys m_keys;
    RowSelectionFade m_selectionFade;
    RowStars m_stars;
    RowPainter m_rowPainter;
    OverlayScroller *m_scroller;
    int m_scrollerInset;
    bool m_acceptsInput = true;
    bool m_isSpokenFocus = false;
    EmptyListText m_emptyText;
    QPersistentModelIndex m_pressedRow; ///< Of the last press, if that was beside the star.
};
