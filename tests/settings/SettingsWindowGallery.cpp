// Shows the settings window in its states, for people to look at, and measures its opening.
//
//   SettingsWindowGallery shots DIR     saves pictures of the window as it draws itself
//   SettingsWindowGallery measure N     opens it N times and prints times
//   SettingsWindowGallery stay SECONDS [dark]   leaves it on the screen

#include "tests/fakes/PaintWatch.h"
#include "tests/settings/SettingsStage.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QTest>
#include <QTimer>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

void click(SettingsWindow &window, const QString &objectName)
{
    window.view().findChild<QAbstractButton *>(objectName)->click();
}

void save(SettingsWindow &window, const QString &path)
{
    QCoreApplication::processEvents(); // Lays out what has changed.
    window.view().grab().save(path);
    std::printf("%s\n", qPrintable(path));
}

void takeShots(const QString &directory)
{
    QDir().mkpath(directory);
    for (const bool isDark : {false, true}) {
        for (const AppLanguage language : {AppLanguage::English, AppLanguage::Chinese}) {
            SettingsStage stage;
            stage.appearance.dark = isDark;
            stage.languages.setLanguage(language);
            SettingsWindow window(stage.collaborators());
            window.show();
            // The focus is seen in an active window only.
            static_cast<void>(QTest::qWaitForWindowActive(&window.view()));
            const QString prefix = directory + (isDark ? u"/dark-"_s : u"/light-"_s) +
                                   (language == AppLanguage::Chinese ? u"zh-"_s : u"en-"_s);
            window.view().findChild<QWidget *>(u"pinButtonSwitch"_s)->setFocus(Qt::TabFocusReason);
            save(window, prefix + u"general.png"_s);
            click(window, u"pane.keyboard"_s);
            save(window, prefix + u"shortcuts.png"_s);
            click(window, u"recordButton"_s);
            save(window, prefix + u"recording.png"_s);
            click(window, u"recordButton"_s);
            stage.hotkey.refusal = 10;
            click(window, u"controlToggle"_s);
            window.view().findChild<QWidget *>(u"controlToggle"_s)->setFocus(Qt::TabFocusReason);
            save(window, prefix + u"refused.png"_s);
            click(window, u"pane.info.circle"_s);
            save(window, prefix + u"about.png"_s);
        }
    }
}

void measure(int rounds)
{
    SettingsStage stage;
    for (int round = 0; round < rounds; ++round) {
        QElapsedTimer timer;
        timer.start();
        SettingsWindow window(stage.collaborators());
        const double built = double(timer.nsecsElapsed()) / 1e6;
        PaintWatch painted(window.view());
        window.show();
        painted.wait();
        const double drawn = double(timer.nsecsElapsed()) / 1e6;
        std::printf("built %.1f  drawn %.1f ms\n", built, drawn);
        window.close();
        static_cast<void>(QTest::qWaitFor([&] { return !window.view().isVisible(); }));
    }
}

int stay(const QStringList &arguments)
{
    SettingsStage stage;
    stage.appearance.dark = arguments.contains(u"dark"_s);
    SettingsWindow window(stage.collaborators());
    window.onClosed = [] { QApplication::quit(); };
    window.show();
    QTimer::singleShot(arguments.value(2).toInt() * 1000, qApp, &QApplication::quit);
    return QApplication::exec();
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication::setApplicationVersion(u"0.1.0"_s);
    const QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    const QString what = arguments.value(1);
    if (what == u"shots"_s)
        takeShots(arguments.value(2));
    else if (what == u"measure"_s)
        measure(arguments.value(2).toInt());
    else if (what == u"stay"_s)
        return stay(arguments);
    else
        return 1;
    return 0;
}
