#include "window/FavoriteLimitHint.h"

#include "appearance/Easing.h"
#include "appearance/Spring.h"
#include "platform/Scheduler.h"
#include "platform/Workspace.h"
#include "window/ClipboardTableView.h"
#include "window/FavoriteLimitHintOverlayView.h"
#include "window/RowLayout.h"

#include <QScreen>
#include <QScrollBar>
#include <QWindow>

#include <algorithm>
#include <utility>

using namespace std::chrono_literals;

namespace {

constexpr auto kStay = 1200ms;
constexpr Spring kPop{.mass = 1, .stiffness = 250, .damping = 15};
constexpr double kPopScale = 0.8;
constexpr double kPopOpacitySeconds = 0.15;
constexpr double kSlideSeconds = 0.25;
constexpr double kSlide = 10;
constexpr auto kFadeDuration = 150ms;
constexpr double kFadeScale = 0.9;
constexpr int kGap = 2; ///< Between the bubble and the star.

FavoriteLimitHintOverlayView::Pose poseAfter(double seconds)
{
    const double spring = kPop.positionAfter(std::chrono::duration<double>(seconds));
    return {.scale = kPopScale + (1 - kPopScale) * spring,
            .opacity = std::min(1.0, seconds / kPopOpacitySeconds),
            .shift = kSlide * (easeOut(std::min(1.0, seconds / kSlideSeconds)) - 1)};
}

} // namespace

FavoriteLimitHint::FavoriteLimitHint(ClipboardTableView &tableView, const Workspace &workspace,
                                     Scheduler &scheduler, const Clock &clock)
    : m_tableView(tableView)
    , m_workspace(workspace)
    , m_scheduler(scheduler)
    , m_animation(scheduler, clock)
{
}

FavoriteLimitHint::~FavoriteLimitHint() = default;

void FavoriteLimitHint::setLook(const Look &look)
{
    m_look = look;
    if (look.isMotionReduced)
        m_animation.finish();
    if (m_view)
        m_view->setColors(look.colors());
}

bool FavoriteLimitHint::showFavoriteLimitHint(int row, const QString &message)
{
    dismiss();
    const QModelIndex index = m_tableView.model()->index(row, 0);
    const QRect place = m_tableView.visualRect(index);
    if (!m_tableView.isVisible() || !place.intersects(m_tableView.viewport()->rect()))
        return false;
    m_view = std::make_unique<FavoriteLimitHintOverlayView>(message, m_look);
    standOver(RowLayout(place).star.toAlignedRect());
    dismissWithList(index);
    popUp();
    m_view->show();
    m_hide = m_scheduler.after(kStay, [this] { fadeOut(); });
    return true;
}

void FavoriteLimitHint::dismiss()
{
    m_hide.reset();
    m_animation.stop();
    m_view.reset();
}

/// On the screen even if the window stands at its edge.
void FavoriteLimitHint::standOver(const QRect &star)
{
    const QRect bubble = m_view->bubble();
    QPoint corner = m_tableView.viewport()->mapToGlobal(star.topLeft())
        + QPoint((star.width() - bubble.width()) / 2, -kGap - bubble.height());
    if (const QScreen *screen = m_tableView.screen()) {
        const QRect available = m_workspace.availableGeometry(*screen);
        const int right = available.right() + 1 - bubble.width();
        corner.setX(std::max(available.x(), std::min(corner.x(), right)));
    }
    m_view->move(corner - bubble.topLeft());
    m_view->winId(); // There is no handle before.
    m_view->windowHandle()->setTransientParent(m_tableView.window()->windowHandle());
}

/// A bubble over another star would tell something wrong, and so would one over a star that has
/// changed.
void FavoriteLimitHint::dismissWithList(const QPersistentModelIndex &row)
{
    const auto dismissOn = [this](auto *sender, auto signal) {
        connect(sender, signal, m_view.get(), [this] { dismiss(); });
    };
    const QAbstractItemModel *model = m_tableView.model();
    dismissOn(m_tableView.verticalScrollBar(), &QScrollBar::valueChanged);
    dismissOn(model, &QAbstractItemModel::rowsInserted);
    dismissOn(model, &QAbstractItemModel::rowsRemoved);
    dismissOn(model, &QAbstractItemModel::modelReset);
    connect(model, &QAbstractItemModel::dataChanged, m_view.get(),
            [this, row](const QModelIndex &first, const QModelIndex &last) {
                if (row.row() >= first.row() && row.row() <= last.row())
                    dismiss();
            });
}

void FavoriteLimitHint::popUp()
{
    if (m_look.isMotionReduced) {
        fade(0, 1, [] {});
        return;
    }
    const auto duration = kPop.settlingDuration();
    const double seconds = std::chrono::duration<double>(duration).count();
    m_animation.start(
        {0, seconds, duration, steady},
        [this](double time) { m_view->setPose(poseAfter(time)); }, [] {});
}

void FavoriteLimitHint::fadeOut()
{
    if (m_look.isMotionReduced) {
        fade(1, 0, [this] { dismiss(); });
        return;
    }
    m_animation.start(
        {1, 0, kFadeDuration, easeIn},
        [this](double presence) {
            m_view->setPose({.scale = kFadeScale + (1 - kFadeScale) * presence,
                             .opacity = presence});
        },
        [this] { dismiss(); });
}

/// In its place and size.
void FavoriteLimitHint::fade(double from, double to, std::function<void()> done)
{
    m_animation.start(
        {from, to, kReducedFade, steady},
        [this](double opacity) { m_view->setPose({.opacity = opacity}); }, std::move(done));
}
