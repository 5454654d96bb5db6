#pragma once

#include <QRect>
#include <QString>

#include <functional>
#include <optional>

class QScreen;
class QWindow;

/// A program with a window on this desktop, as it was when it was asked for.
struct RunningApplication
{
    QString bundleIdentifier; ///< Desktop-file id, else the window class; empty if it has neither.
    QString localizedName; ///< For people; empty if there is none.
    quint64 window = 0; ///< The window that had the focus, in the desktop's own numbering.
    qint64 processId = 0; ///< Zero if the desktop does not tell.
    quint64 windowSerial = 0; ///< Tells the window from later ones with its number.

    friend bool operator==(const RunningApplication &, const RunningApplication &) = default;
};

/// The programs and windows of the desktop. Main thread only; never waits for another program.
class Workspace
{
public:
    virtual ~Workspace() = default;

    /// The program whose window has the focus; absent if none has, or the desktop does not tell.
    virtual std::optional<RunningApplication> frontmostApplication() const = 0;

    /// True if \a application is this program, by its identifier; two missing ones are the same.
    virtual bool isOwnApplication(const RunningApplication &application) const = 0;

    /// Brings the window of \a application to the front and gives it the focus. Does nothing if
    /// that window is gone, even if another has its number now.
    virtual void activate(const RunningApplication &application) = 0;

    /// Brings a window of this program to the front with the focus. It must have been shown.
    virtual void activateOwnWindow(QWindow *window) = 0;

    /// To be called before \a window is shown because the person has just asked for it: the desktop
    /// will let it take the focus. A tool window that is not on the screen yet is kept out of the
    /// desktop's lists of windows as well.
    virtual void prepareOwnWindow(QWindow *window) = 0;

    /// Whether the desktop has let go of \a window, which has been hidden, and knows it still. One that
    /// is shown again before may be taken away at once. Waits for the desktop's server.
    virtual bool isWithdrawn(QWindow *window) = 0;

    /// To be called when the person has just asked for something outside the program's windows, in
    /// a launcher or a tray, before a window is shown for it: the desktop will let it take the
    /// focus. \a activationToken is what the launcher gave along; it may be empty. A launcher that
    /// waits for the program is told that it is there.
    virtual void noteUserAction(const QString &activationToken) = 0;

    /// A new token for a program that the person has just asked for in one of our windows: the
    /// desktop will let its windows take the focus. Empty if nothing is known that the person did.
    virtual QString newActivationToken() const = 0;

    /// The name of an installed program by its identifier; absent if there is no such program.
    virtual std::optional<QString> applicationName(const QString &bundleIdentifier) const = 0;

    /// What panels leave of \a screen to windows, in global device-independent pixels. All of it if
    /// they claim to leave next to nothing.
    QRect availableGeometry(const QScreen &screen) const;

    /// Called when that may have changed, besides what the screens themselves tell.
    std::function<void()> onAvailableGeometryChanged;

    /// Called after another program's window, or one of ours, has got the focus. Who asks for the
    /// frontmost application and listens from then on is not told of that one.
    std::function<void(const RunningApplication &)> onApplicationActivated;

protected:
    /// What they claim to leave.
    virtual QRect claimedGeometry(const QScreen &screen) const;
};
