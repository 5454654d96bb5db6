#include "window/HistoryWindow.h"

#include "core/ClipboardItemManager.h"
#include "foundation/UserDefaults.h"
#include "platform/Clock.h"
#include "platform/DesktopAppearance.h"
#include "platform/Scheduler.h"
#include "platform/Workspace.h"
#include "preview/TextPreview.h"
#include "widgets/DesktopLook.h"
#include "widgets/InputMethod.h"
#include "widgets/PinButtonSetting.h"
#include "window/ClipboardTableView.h"
#include "window/FilterBarView.h"
#include "window/PinButton.h"
#include "window/SearchField.h"
#include "window/SpokenFocus.h"
#include "window/WindowFrame.h"

#include <QApplication>
#include <QPointer>
#include <QScreen>
#include <QWindow>

#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString kFrameKey = u"ClipboardSearchWindowFrame"_s;

/// How long a window manager may take to put the window on the screen.
constexpr auto kComingPatience = 1s;

/// And to give it the focus, until it is asked once more.
constexpr auto kFocusPatience = 250ms;
constexpr int kMostFocusReminders = 3;

} // namespace

HistoryWindow::HistoryWindow(const HistoryWindowStyle &style,
                             const HistoryWindowCollaborators &collaborators,
                             const ClipboardItemList &items)
    : m_collaborators(collaborators)
    , m_shell(collaborators.shells.lend(style))
    , m_panel(*m_shell, style, collaborators.workspace, collaborators.list.tagManager,
              collaborators.list.scheduler, collaborators.list.clock)
    , m_blurBehind(*m_shell, style.cornerRadius, collaborators.appearance)
    , m_tableViewController(m_panel.tableView(), style.selectionRadius, collaborators.list, items)
    , m_textPreview(collaborators.makeTextPreview ? collaborators.makeTextPreview() : nullptr)
    , m_searchFieldController(m_panel.searchField(), m_panel.tableView(), m_tableViewController,
                              m_textPreview.get())
    , m_textScale(collaborators.appearance.textScale())
    , m_motion(m_panel.presentationLayer(),
               style.isTranslucent ? WindowMotion::Kind::FadeAndScale : WindowMotion::Kind::Fade,
               collaborators.list.scheduler, collaborators.list.clock)
{
    m_shell->setContent(m_panel);
    refreshAppearance();
    refreshLanguage();
    placeInitially();
    connectPanel();
    connectList();
    connectSearchField();
    connectPreview();
    connectDesktop();
}

HistoryWindow::~HistoryWindow()
{
    m_outsideWatch.reset();
    if (m_textPreview) {
        m_textPreview->onVisibilityChanged = {};
        m_textPreview->onTextEditingStateChanged = {};
        m_textPreview->hidePreview(TextPreview::Focus::Leave);
    }
    // The widget tells of losing the focus while it ends.
    m_shell->disconnect(&m_tableViewController);
}

bool HistoryWindow::isSeen() const
{
    const bool isComing = m_collaborators.list.clock.now() - m_shownAt < kComingPatience;
    return isVisible() && (isComing || m_shell->windowHandle()->isExposed());
}

void HistoryWindow::show()
{
    if (isVisible() && !isSeen())
        m_shell->hide(); // What the desktop does not hold any more it is given anew.
    const bool wasVisible = isVisible();
    const bool wasHiding = std::exchange(m_isHideAnimationInFlight, false);
    ++m_visibilityAnimationToken;
    refreshAppearance();
    clampFrame();
    if (wasVisible && !wasHiding) {
        m_motion.settle();
        bringForward();
        return;
    }
    m_shownAt = m_collaborators.list.clock.now();
    m_searchFieldController.clearListSearch();
    enter(wasVisible ? WindowMotion::Start::WhereItStands : WindowMotion::Start::Unseen);
    bringForward();
    m_outsideWatch.emplace(m_collaborators.pointerMonitor, m_collaborators.workspace,
                           m_collaborators.list.scheduler, *m_shell, [this] { turnAway(); });
}

void HistoryWindow::hide()
{
    // Whoever pastes hides the window too; it may be gone by then.
    if (m_isHideAnimationInFlight || !isVisible())
        return;
    if (m_textPreview)
        m_textPreview->hidePreview(TextPreview::Focus::Leave);
    if (!m_shell->geometry().isEmpty())
        m_collaborators.defaults.set(kFrameKey, WindowFrame::toString(m_shell->geometry()));
    m_blurBehind.setWanted(false); // It would not fade.
    m_panel.filterBar().closeOverflowMenu();
    m_tableViewController.dismissOverlays();
    ++m_visibilityAnimationToken;
    leave();
}

void HistoryWindow::hideAtOnce()
{
    hide();
    if (!isVisible())
        return;
    ++m_visibilityAnimationToken;
    finishExit();
}

void HistoryWindow::updateItems(const ClipboardItemList &items)
{
    m_tableViewController.setItems(items);
    m_tableViewController.applyFilters(ClipboardTableViewController::Scroll::Keep);
}

void HistoryWindow::refreshLanguage()
{
    m_panel.refreshLanguage();
    m_searchFieldController.refreshLanguage();
    m_tableViewController.refreshTexts();
    refreshPinButtonVisibility();
}

void HistoryWindow::introduceToInputMethod()
{
    m_shell->winId(); // Creates it.
    m_panel.searchField().setFocus();
    InputMethod::introduce(m_panel.searchField());
}

void HistoryWindow::refreshAppearance()
{
    const Look look = desktopLook(m_collaborators.appearance);
    m_isMotionReduced = look.isMotionReduced;
    m_shell->setColors(look.colors());
    m_panel.setColors(look.colors());
    m_panel.setBackgroundAlpha(look.windowAlpha());
    m_blurBehind.setWanted(look.wantsBlur() && !m_isHideAnimationInFlight);
    if (std::exchange(m_textScale, look.textScale) != look.textScale) {
        m_panel.searchField().refreshFont();
        m_panel.filterBar().refreshTitles();
    }
    m_panel.filterBar().setMenuLook(look);
    m_tableViewController.setLook(look);
    if (m_isMotionReduced)
        m_motion.finish(); // Last, since whoever made the window may drop it then.
}

void HistoryWindow::refreshPinButtonVisibility()
{
    const bool isWanted = isPinButtonWanted(m_collaborators.defaults);
    if (!isWanted && isPinned())
        setPinned(false);
    m_panel.setPinButtonShown(isWanted);
}

bool HistoryWindow::isPinned() const
{
    return m_panel.pinButton().isPinned();
}

void HistoryWindow::togglePin()
{
    setPinned(!isPinned());
}

void HistoryWindow::connectPanel()
{
    QObject *context = &m_tableViewController;
    const auto connectTo = [this, context](auto *sender, auto signal, auto slot) {
        QObject::connect(sender, signal, context, [this, slot] { (this->*slot)(); });
    };
    connectTo(m_shell.get(), &WindowShell::cancelRequested, &HistoryWindow::handleEscapeElsewhere);
    connectTo(m_shell.get(), &WindowShell::deactivated, &HistoryWindow::handleDeactivation);
    connectTo(m_shell.get(), &WindowShell::closeRequested, &HistoryWindow::hideAtOnce);
    connectTo(m_shell.get(), &WindowShell::desktopColorsChanged, &HistoryWindow::refreshAppearance);
    QObject::connect(&m_panel.filterBar(), &FilterBarView::filterSelected, context,
                     [this](const FilterCategory &category) { selectFilter(category); });
}

void HistoryWindow::connectList()
{
    m_tableViewController.onItemSelected
        = [this](const ClipboardItemPointer &item) { pasteItem(item); };
    m_tableViewController.onWindowHidden = [this] { hide(); };
    m_tableViewController.onFavoriteToggled = [this](const QUuid &id) {
        if (onFavoriteToggled)
            onFavoriteToggled(id);
    };
    SpokenFocus &spokenFocus = m_panel.spokenFocus();
    QObject::connect(&m_tableViewController, &ClipboardTableViewController::announced,
                     &spokenFocus, &SpokenFocus::announce);
    QObject::connect(&m_tableViewController, &ClipboardTableViewController::resultAnnounced,
                     &spokenFocus, &SpokenFocus::announceAfterTyping);
}

void HistoryWindow::connectSearchField()
{
    SearchField *field = &m_panel.searchField();
    QObject::connect(field, &SearchField::pastePressed, &m_tableViewController, [this, field] {
        if (m_collaborators.list.pasteboardText)
            field->insert(m_collaborators.list.pasteboardText());
    });
    QObject::connect(&m_searchFieldController, &SearchFieldController::cancelled,
                     &m_tableViewController, [this] { hide(); });
}

void HistoryWindow::connectPreview()
{
    if (!m_textPreview)
        return;
    TextPreview &preview = *m_textPreview;
    m_tableViewController.onPreviewRequested
        = [this, &preview](const ClipboardItemPointer &item, QWidget &responder) {
              preview.togglePreview(item, *m_shell, &responder);
          };
    m_panel.onWheel = [this, &preview](QWheelEvent &event) {
        return isPreviewVisible() && preview.handleWheel(event);
    };
    preview.onVisibilityChanged = [this](bool isOpen) { handlePreviewVisibility(isOpen); };
    preview.onTextEditingStateChanged
        = [this](bool isEditing) { m_searchFieldController.setPreviewTextEditing(isEditing); };
    preview.onTextSaveRequested
        = [this](const QUuid &id, const QString &text, TextPreview::SaveCompletion completion) {
              savePreviewText(id, text, std::move(completion));
          };
}

void HistoryWindow::connectDesktop()
{
    m_appearanceHook.emplace(m_collaborators.appearance.onChanged, [this] { refreshAppearance(); });
    connectScreens();
}

void HistoryWindow::connectScreens()
{
    QObject *context = &m_tableViewController;
    // Later, since a window is given to another screen only after its own was told to be gone.
    const auto clampWhileOpen = [this] {
        if (isVisible())
            clampFrame();
    };
    m_panelsHook.emplace(m_collaborators.workspace.onAvailableGeometryChanged, clampWhileOpen);
    const auto watch = [context, clampWhileOpen](const QScreen *screen) {
        QObject::connect(screen, &QScreen::availableGeometryChanged, context, clampWhileOpen,
                         Qt::QueuedConnection);
    };
    for (const QScreen *screen : QGuiApplication::screens())
        watch(screen);
    QObject::connect(qGuiApp, &QGuiApplication::screenAdded, context, watch);
    QObject::connect(qGuiApp, &QGuiApplication::screenRemoved, context, clampWhileOpen,
                     Qt::QueuedConnection);
}

void HistoryWindow::placeInitially()
{
    QScreen *screen = QGuiApplication::primaryScreen();
    const QString saved = m_collaborators.defaults.string(kFrameKey).value_or(QString());
    const std::optional<QRect> frame = WindowFrame::fromString(saved);
    if (!screen) {
        m_shell->resize(WindowFrame::kWindowWidth, WindowFrame::kWindowDefaultHeight);
        return;
    }
    const QRect available = m_collaborators.workspace.availableGeometry(*screen);
    m_shell->setScreen(screen); // A kept window may come from another one.
    m_shell->setGeometry(frame ? WindowFrame::clamped(*frame, available)
                               : WindowFrame::centred(available));
}

void HistoryWindow::clampFrame()
{
    const QScreen *screen = m_shell->screen();
    if (!screen)
        return;
    const QRect frame = WindowFrame::clamped(m_shell->geometry(),
                                             m_collaborators.workspace.availableGeometry(*screen));
    if (frame != m_shell->geometry())
        m_shell->setGeometry(frame);
}

void HistoryWindow::bringForward()
{
    Workspace &workspace = m_collaborators.workspace;
    m_panel.searchField().setFocus();
    m_shell->winId(); // The desktop is told before the window appears, so it must exist.
    workspace.prepareOwnWindow(m_shell->windowHandle());
    m_shell->show();
    workspace.activateOwnWindow(m_shell->windowHandle());
    remindOfFocus(kMostFocusReminders);
}

/// A window manager that is behind may take what it does late for later than the opening, and refuse
/// the focus to the window.
void HistoryWindow::remindOfFocus(int times)
{
    m_focusReminder = m_collaborators.list.scheduler.after(kFocusPatience, [this, times] {
        const bool isFocusDue = isVisible() && !m_isHideAnimationInFlight && !isPinned()
            && !isPreviewVisible() && !m_shell->isActiveWindow();
        if (!isFocusDue)
            return;
        m_collaborators.workspace.noteUserAction({});
        m_collaborators.workspace.activateOwnWindow(m_shell->windowHandle());
        if (times > 1)
            remindOfFocus(times - 1);
    });
}

void HistoryWindow::enter(WindowMotion::Start start)
{
    if (m_isMotionReduced)
        m_motion.settle();
    else
        m_motion.enter(start, ifNotOvertaken(&HistoryWindow::finishEntrance));
}

void HistoryWindow::leave()
{
    if (m_isMotionReduced) {
        finishExit();
        return;
    }
    m_isHideAnimationInFlight = true;
    m_motion.leave(ifNotOvertaken(&HistoryWindow::finishExit));
}

std::function<void()> HistoryWindow::ifNotOvertaken(void (HistoryWindow::*finish)())
{
    return [this, finish, token = m_visibilityAnimationToken] {
        if (token == m_visibilityAnimationToken)
            (this->*finish)();
    };
}

void HistoryWindow::finishEntrance()
{
    m_motion.settle();
}

void HistoryWindow::finishExit()
{
    // Cleared only afterwards: the window loses the focus while it goes, which is no new reason to
    // hide.
    m_isHideAnimationInFlight = true;
    m_shell->hide();
    m_isHideAnimationInFlight = false;
    m_motion.settle();
    m_outsideWatch.reset();
    if (onWindowHidden)
        onWindowHidden();
}

void HistoryWindow::pasteItem(const ClipboardItemPointer &item)
{
    // A window on its way out still gets keys, but it has done its work.
    if (m_isHideAnimationInFlight)
        return;
    if (onPasteSelected)
        onPasteSelected(item);
    hide();
}

void HistoryWindow::setPinned(bool isPinned)
{
    m_panel.pinButton().setPinned(isPinned);
}

bool HistoryWindow::isPreviewVisible() const
{
    return m_textPreview && m_textPreview->isVisible();
}

void HistoryWindow::handlePreviewVisibility(bool isOpen)
{
    m_panel.setListShown(!isOpen);
    m_searchFieldController.setPreviewOpen(isOpen);
}

void HistoryWindow::savePreviewText(const QUuid &id, const QString &text,
                                    std::function<void(std::optional<ClipboardItem>)> completion)
{
    ClipboardItemManager &itemManager = m_collaborators.list.itemManager;
    // The window may be gone by then.
    const QPointer<ClipboardTableViewController> list(&m_tableViewController);
    itemManager.updateTextContent(
        id, text,
        [this, list, &itemManager,
         completion = std::move(completion)](const std::optional<ClipboardItem> &item) {
            if (!list)
                return;
            updateItems(itemManager.items());
            completion(item);
        });
}

void HistoryWindow::selectFilter(const FilterCategory &category)
{
    if (isPreviewVisible())
        m_textPreview->hidePreview(TextPreview::Focus::Leave);
    m_tableViewController.setActiveFilter(category);
    m_tableViewController.applyFilters(ClipboardTableViewController::Scroll::ToTop);
    m_panel.searchField().setFocus();
}

void HistoryWindow::handleEscapeElsewhere()
{
    if (isPreviewVisible())
        m_textPreview->hidePreview(TextPreview::Focus::Restore);
    else if (!isPinned())
        hide();
    else if (!m_panel.searchField().text().isEmpty())
        m_searchFieldController.clearListSearch();
}

void HistoryWindow::handleDeactivation()
{
    // The preview takes the keyboard, but nobody has turned away.
    if (!hasFocus() && !isPreviewVisible())
        turnAway();
}

bool HistoryWindow::hasFocus() const
{
    const auto frontmost = m_collaborators.workspace.frontmostApplication();
    return frontmost && m_collaborators.workspace.isOwnApplication(*frontmost)
        && frontmost->window == m_shell->effectiveWinId();
}

void HistoryWindow::turnAway()
{
    if (!isVisible() || isPinned() || m_isHideAnimationInFlight)
        return;
    if (onTurnedAway)
        onTurnedAway();
    hide();
}
