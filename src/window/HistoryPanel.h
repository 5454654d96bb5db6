#pragma once

#include "window/GlassContainerView.h"
#include "window/PresentationLayer.h"

#include <functional>
#include <memory>

class ClipboardTableView;
class Clock;
class EdgeResizeView;
class FilterBarView;
class PinButton;
class Scheduler;
class SearchField;
class SeparatorLine;
class SpokenFocus;
class SymbolView;
class TagManager;
class WindowDragView;
class Workspace;

/// What stands in the window: holds the views and puts them in their places. What they do is decided
/// by the owner.
class HistoryPanel : public GlassContainerView
{
    Q_OBJECT

public:
    /// All but the style must outlive the panel.
    HistoryPanel(QWidget &window, const HistoryWindowStyle &style, const Workspace &workspace,
                 TagManager &tagManager, Scheduler &scheduler, const Clock &clock);
    ~HistoryPanel() override;

    SearchField &searchField() { return *m_searchField; }
    PinButton &pinButton() const { return *m_pinButton; }
    FilterBarView &filterBar() { return *m_filterBar; }
    ClipboardTableView &tableView() { return *m_tableView; }
    SpokenFocus &spokenFocus() { return *m_spokenFocus; }

    void setColors(const SystemColors &colors);

    void refreshLanguage();

    /// Without the button the search field is a little wider.
    void setPinButtonShown(bool isShown);

    void setListShown(bool isShown);

    /// How all that stands on the window is shown.
    PresentationLayer &presentationLayer() { return m_presentationLayer; }

    /// Gets what no view has a use for; returns false if it has none either.
    std::function<bool(QWheelEvent &)> onWheel;

protected:
    void paintOnGround(QPainter &painter) const override;
    void resizeEvent(QResizeEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    void buildHead(const Workspace &workspace, TagManager &tagManager, Scheduler &scheduler);
    void buildList(const HistoryWindowStyle &style, Scheduler &scheduler, const Clock &clock);
    void buildHandles(const Workspace &workspace);
    void layoutViews();

    PresentationLayer m_presentationLayer;
    QColor m_ringColor;
    bool m_isPinButtonShown = true;

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
