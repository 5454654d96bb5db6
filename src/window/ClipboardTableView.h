#pragma once

#include "appearance/SystemColors.h"

#include <QListView>

class HistoryRowDelegate;
class OverlayScroller;
class Scheduler;

/// The list of the history: rows of one height, at most one of them selected.
class ClipboardTableView : public QListView
{
    Q_OBJECT

public:
    enum class StarState { Rest, Hovered, Pressed };

    /// \a scheduler must outlive the view. The scroller stays \a scrollerInset away from the lower
    /// end, where the window is round.
    ClipboardTableView(Scheduler &scheduler, int scrollerInset, QWidget *parent = nullptr);

    void setRowDelegate(HistoryRowDelegate *delegate);
    void setColors(const SystemColors &colors);

    /// What stands in the place of the rows while there are none. The note may be empty.
    void setEmptyText(const QString &title, const QString &note);

    /// The selected row, -1 if there is none.
    int selectedRow() const;
    void selectRow(int row);
    void deselectAll();

    /// The state of the star at \a position of the viewport.
    StarState starStateAt(QPoint position) const;

    void keyboardSearch(const QString &) override {}

signals:
    void enterPressed();
    void rowActivated(int row); ///< By a double click.
    void starClicked(int row);

protected:
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
    /// The row whose star is at \a position; -1 if none is.
    int starRowAt(QPoint position) const;
    void setHoveredStar(int row);
    void paintEmptyText();
    void placeScroller();

    SystemColors m_colors;
    HistoryRowDelegate *m_rowDelegate = nullptr;
    OverlayScroller *m_scroller;
    int m_scrollerInset;
    QString m_emptyTitle;
    QString m_emptyNote;
    int m_hoveredStar = -1;
    int m_pressedStar = -1;
};
