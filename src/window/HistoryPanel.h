#pragma once

#include "appearance/SystemColors.h"
#include "window/HistoryWindowStyle.h"
#include "window/PresentationLayer.h"

#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

class ClipboardTableView;
class Clock;
class EdgeResizeView;
class FilterBarView;
class GlassContainerView;
class PinButton;
class Scheduler;
class SearchField;
class SeparatorLine;
class SpokenFocus;
class SymbolView;
class TagManager;
class WindowDragView;
class Workspace;

/// The frameless window itself: holds the views and puts them in their places. What they do is
/// decided by the owner.
class HistoryPanel : public QWidget
{
    Q_OBJECT

public:
    /// All but the style must outlive the panel.
    HistoryPanel(const HistoryWindowStyle &style, const Workspace &workspace,
                 TagManager &tagManager, Scheduler &scheduler, const Clock &clock);
    ~HistoryPanel() override;

    SearchField &searchField() { return *m_searchField; }
    PinButton &pinButton() const { return *m_pinButton; }
    FilterBarView &filterBar() { return *m_filterBar; }
    ClipboardTableView &tableView() { return *m_tableView; }
    SpokenFocus &spokenFocus() { return *m_spokenFocus; }

    void setColors(const SystemColors &colors);

    /// Of a translucent window; others are opaque.
    void setBackgroundAlpha(qreal alpha);

    void refreshLanguage();

    /// Without the button the search field is a little wider.
    void setPinButtonShown(bool isShown);

    void setListShown(bool isShown);

    /// How all that stands on the window is shown.
    PresentationLayer &presentationLayer() { return m_presentationLayer; }

    /// Gets what no view has a use for; returns false if it has none either.
    std::function<bool(QWheelEvent &)> onWheel;

signals:
    void cancelRequested(); ///< Esc anywhere but in the search field.
    void deactivated(); ///< Another window has got the keyboard.
    /// By the window manager, or since the program ends, which a window that stays would prevent.
    void closeRequested();
    void desktopColorsChanged();

protected:
    void changeEvent(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void moveEvent(QMoveEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    void buildHead(const Workspace &workspace, TagManager &tagManager, Scheduler &scheduler);
    void buildList(Scheduler &scheduler, const Clock &clock);
    void buildHandles(const Workspace &workspace);
    void layoutViews();
    void cutShape();
    void paintStrongEdge(QPainter &painter) const;
    void paintFocusRings(QPainter &painter) const;

    HistoryWindowStyle m_style;
    GlassContainerView *m_glassContainerView;
    PresentationLayer m_presentationLayer;
    SystemColors m_colors;
    bool m_isPinButtonShown = true;
    /// Where the window was shown, until the first news of a move or of the focus.
    std::optional<QPoint> m_placeWhenShown;

    WindowDragView *m_dragView = nullptr;
    SymbolView *m_searchIcon = nullptr;
    SearchField *m_searchField = nullptr;
    PinButton *m_pinButton = nullptr;
    FilterBarView *m_filterBar = nullptr;
    SeparatorLine *m_separatorLine = nullptr;
    QWidget *m_tableContainerView = nullptr;
    ClipboardTableView *m_tableView = nullptr;
    EdgeResizeView *m_topResizeView = nullptr;
    EdgeResizeView *m_bottomResizeView = nullptr;
    std::unique_ptr<SpokenFocus> m_spokenFocus;
};
