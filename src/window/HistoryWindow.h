#pragma once

#include "foundation/CallbackHook.h"
#include "foundation/Timestamp.h"
#include "window/BlurBehind.h"
#include "window/ClipboardSearchWindowProtocol.h"
#include "window/ClipboardTableViewController.h"
#include "window/HistoryPanel.h"
#include "window/OutsideWatch.h"
#include "window/SearchFieldController.h"
#include "window/ShellKeeper.h"
#include "window/WindowMotion.h"

#include <functional>
#include <memory>
#include <optional>

class DesktopAppearance;
class PointerMonitor;
class ScheduledWork;
class TextPreview;
class UserDefaults;
class Workspace;

/// What a history window needs of others; all of it must outlive the window.
struct HistoryWindowCollaborators
{
    Workspace &workspace;
    PointerMonitor &pointerMonitor;
    DesktopAppearance &appearance;
    UserDefaults &defaults;
    ShellKeeper &shells;
    HistoryListCollaborators list;
    /// Makes the preview of a window. Without it nothing offers one.
    std::function<std::unique_ptr<TextPreview>()> makeTextPreview = {};
};

/// The history window with everything that its two kinds share. It opens where it last stood, and
/// closes as soon as the person turns to something else, unless it is pinned.
class HistoryWindow : public ClipboardSearchWindowProtocol
{
public:
    ~HistoryWindow() override;

    bool isVisible() const override { return m_shell->isVisible(); }
    bool isSeen() const override;
    bool isHideAnimationInFlight() const override { return m_isHideAnimationInFlight; }
    void show() override;
    void hide() override;
    void updateItems(const ClipboardItemList &items) override;
    void refreshLanguage() override;
    void refreshPinButtonVisibility() override;

    /// Lets the input method know of the window before it is opened for the first time.
    void introduceToInputMethod();

    /// Takes its look from the desktop again.
    void refreshAppearance();

    bool isPinned() const;
    void togglePin();

    /// The widget on the screen, which the next window may get.
    QWidget &shell() { return *m_shell; }

    ClipboardTableViewController &tableViewController() { return m_tableViewController; }

protected:
    HistoryWindow(const HistoryWindowStyle &style, const HistoryWindowCollaborators &collaborators,
                  const ClipboardItemList &items);

private:
    void connectPanel();
    void connectList();
    void connectSearchField();
    void connectPreview();
    void connectDesktop();
    void connectScreens();
    void placeInitially();
    void clampFrame();
    void bringForward();
    void remindOfFocus(int times);
    void hideAtOnce();
    void enter(WindowMotion::Start start);
    void leave();
    /// \a finish, for the end of a motion after which nothing else has begun.
    std::function<void()> ifNotOvertaken(void (HistoryWindow::*finish)());
    void finishEntrance();
    void finishExit();
    void pasteItem(const ClipboardItemPointer &item);
    void setPinned(bool isPinned);

    bool isPreviewVisible() const;
    void handlePreviewVisibility(bool isOpen);
    void savePreviewText(const QUuid &id, const QString &text,
                         std::function<void(std::optional<ClipboardItem>)> completion);

    void selectFilter(const FilterCategory &category);
    void handleEscapeElsewhere();
    void handleDeactivation();
    /// Whether the window has the focus as the desktop sees it. Another program that takes the
    /// keyboard for itself for a while leaves it there, though our window then counts as inactive.
    bool hasFocus() const;
    void turnAway();

    HistoryWindowCollaborators m_collaborators;
    ShellKeeper::LentShell m_shell;
    HistoryPanel m_panel;
    BlurBehind m_blurBehind;
    ClipboardTableViewController m_tableViewController;
    std::unique_ptr<TextPreview> m_textPreview;
    SearchFieldController m_searchFieldController;
    qreal m_textScale; ///< With which the views were measured.
    WindowMotion m_motion;
    /// Counts show() and hide(): an animation that ends acts only if nothing has come between.
    quint64 m_visibilityAnimationToken = 0;
    bool m_isHideAnimationInFlight = false;
    Timestamp m_shownAt;
    bool m_isMotionReduced = false;
    std::optional<CallbackHook<>> m_appearanceHook;
    std::optional<CallbackHook<>> m_panelsHook;
    std::unique_ptr<ScheduledWork> m_focusReminder;
    std::optional<OutsideWatch> m_outsideWatch; ///< There while the window is open.
};
