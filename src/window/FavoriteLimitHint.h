#pragma once

#include "widgets/MenuLook.h"
#include "window/ValueAnimation.h"

#include <QObject>
#include <QPersistentModelIndex>

#include <functional>
#include <memory>

class ClipboardTableView;
class FavoriteLimitHintOverlayView;
class Workspace;

/// Says over the star of a row, for a moment, that there are no more favourites to be had.
class FavoriteLimitHint : public QObject
{
    Q_OBJECT

public:
    /// Everything must outlive the object.
    FavoriteLimitHint(ClipboardTableView &tableView, const Workspace &workspace,
                      Scheduler &scheduler, const Clock &clock);
    ~FavoriteLimitHint() override;

    /// Where the look has no motion, a hint that comes is there at once, and one that goes is gone.
    void setLook(const Look &look);

    /// In the place of a hint that is still there. False if \a row is not in sight.
    bool showFavoriteLimitHint(int row, const QString &message);

    /// At once.
    void dismiss();

private:
    void standOver(const QRect &star);
    void dismissWithList(const QPersistentModelIndex &row);
    void popUp();
    void fadeOut();
    void fade(double from, double to, std::function<void()> done);

    ClipboardTableView &m_tableView;
    const Workspace &m_workspace;
    Scheduler &m_scheduler;
    Look m_look;
    std::unique_ptr<FavoriteLimitHintOverlayView> m_view; ///< While there is a hint.
    ValueAnimation m_animation;
    std::unique_ptr<ScheduledWork> m_hide;
};
