// Shows the history window, for people to try it, and measures its opening.
//
//   HistoryWindowGallery measure N [compat] [warm]   opens it N times over 10,000 entries and
//                                      prints times, after warming up if wanted
//   HistoryWindowGallery stay SECONDS [compat] [dark] [empty] [tags]   leaves it on the screen

#include "tests/fakes/PaintWatch.h"
#include "tests/window/HistoryStage.h"
#include "tests/window/SampleHistory.h"

#include "platform/linux/QtScheduler.h"
#include "window/FilterButton.h"
#include "window/HistoryPanel.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QTest>
#include <QTimer>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

/// Runs as any clock does, from the hour by which the entries of samples are dated.
class StageClock : public Clock
{
public:
    StageClock() { restart(); }

    Timestamp now() const override
    {
        return FakeClock().now() + std::chrono::microseconds(m_running.nsecsElapsed() / 1000);
    }

    void restart() { m_running.start(); }

private:
    QElapsedTimer m_running;
};

/// A stage whose time runs by itself.
class RunningStage : public HistoryStage
{
protected:
    Scheduler &scheduler() override { return m_runningScheduler; }
    const Clock &clock() const override { return m_runningClock; }
    void resetClock() override { m_runningClock.restart(); }

private:
    QtScheduler m_runningScheduler;
    StageClock m_runningClock;
};

void waitForEntrance(HistoryWindow &window)
{
    static_cast<void>(QTest::qWaitForWindowActive(&window.shell()));
    const PresentationLayer &layer
        = window.shell().findChild<HistoryPanel *>()->presentationLayer();
    static_cast<void>(QTest::qWaitFor([&layer] { return layer.presentation() == Presentation(); }));
}

QList<FilterButton *> pills(HistoryWindow &window)
{
    return window.shell().findChildren<FilterButton *>();
}

/// How long \a act takes and, with \a draw after it, until all is drawn.
template <typename Act, typename Draw>
QString handledAndDrawn(const Act &act, const Draw &draw)
{
    QElapsedTimer timer;
    timer.start();
    act();
    const double handled = timer.nsecsElapsed() / 1e6;
    draw();
    return u"%1/%2"_s.arg(handled, 0, 'f', 1).arg(timer.nsecsElapsed() / 1e6, 0, 'f', 1);
}

/// Of letters that are typed one after the other. Leaves the field empty.
QStringList keyTimes(HistoryWindow &window)
{
    auto *field = window.shell().findChild<QLineEdit *>();
    QWidget *list = window.shell().findChild<QAbstractScrollArea *>()->viewport();
    QStringList times;
    for (const char key : {'s', 'o', 'l', 'q', 'u', 'w', 'x'})
        times.append(u"%1 %2"_s.arg(QChar::fromLatin1(key),
                                    handledAndDrawn([&] { QTest::keyClick(field, key); },
                                                    [&] { list->repaint(); })));
    QTest::keyClick(field, Qt::Key_Escape);
    return times;
}

QStringList pillTimes(HistoryWindow &window)
{
    QStringList times;
    for (const int index : {1, 2, 5, 0}) {
        QAbstractButton *pill = pills(window).at(index);
        times.append(handledAndDrawn([&] { QTest::mouseClick(pill, Qt::LeftButton); },
                                     [&] { window.shell().repaint(); }));
    }
    return times;
}

void measure(int rounds, bool isComposited, bool isWarm)
{
    RunningStage stage;
    stage.appearance.composited = isComposited;
    const ClipboardItemList items = SampleHistory::corpus(10'000);
    if (isWarm) {
        QElapsedTimer timer;
        timer.start();
        warmUpHistoryWindow(stage.collaborators());
        std::printf("warmed up in %.1f ms\n", timer.nsecsElapsed() / 1e6);
    }
    for (int round = 0; round < rounds; ++round) {
        QElapsedTimer timer;
        timer.start();
        auto window = stage.makeWindow(items);
        const double built = timer.nsecsElapsed() / 1e6;
        PaintWatch painted(window->shell());
        window->show();
        const double shown = timer.nsecsElapsed() / 1e6;
        painted.wait();
        const double drawn = timer.nsecsElapsed() / 1e6;
        waitForEntrance(*window);
        const QStringList keys = keyTimes(*window);
        const QStringList filters = pillTimes(*window);
        const QRect frame = window->shell().geometry();
        window->hide();
        static_cast<void>(QTest::qWaitFor([&] { return !window->isVisible(); }));
        std::printf("at %d,%d  ", frame.x(), frame.y());
        std::printf("built %.1f  show() returns %.1f  painted %.1f ms;  key handled/drawn: %s;  "
                    "pill handled/drawn: %s\n",
                    built, shown, drawn, qPrintable(keys.join(u"  "_s)),
                    qPrintable(filters.join(u"  "_s)));
    }
}

int stay(const QStringList &arguments)
{
    RunningStage stage;
    stage.appearance.composited = !arguments.contains(u"compat"_s);
    stage.appearance.dark = arguments.contains(u"dark"_s);
    if (arguments.contains(u"tags"_s))
        stage.setTags(SampleHistory::numberedTags(7));
    const auto window = stage.makeWindow(
        arguments.contains(u"empty"_s) ? ClipboardItemList() : SampleHistory::mixed());
    window->onWindowHidden = [] { QApplication::quit(); };
    window->togglePin();
    window->show();
    QTimer::singleShot(arguments.value(2).toInt() * 1000, qApp, &QApplication::quit);
    return QApplication::exec();
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    const QString what = arguments.value(1);
    if (what == u"measure"_s)
        measure(arguments.value(2).toInt(), !arguments.contains(u"compat"_s),
                arguments.contains(u"warm"_s));
    else if (what == u"stay"_s)
        return stay(arguments);
    else
        return 1;
    return 0;
}
