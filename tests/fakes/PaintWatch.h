#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>

/// Tells when a window has been painted, for figures of how long that takes.
class PaintWatch : public QObject
{
public:
    explicit PaintWatch(QWidget &window) { window.installEventFilter(this); }

    /// Returns when the next paint is over.
    void wait()
    {
        m_isPainted = false;
        while (!m_isPainted)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        // One turn later everything below the window is painted too.
        if (event->type() == QEvent::Paint)
            QTimer::singleShot(0, this, [this] { m_isPainted = true; });
        return false;
    }

private:
    bool m_isPainted = false;
};
