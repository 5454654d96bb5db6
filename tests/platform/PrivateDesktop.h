#pragma once

#include "tests/platform/EndWithParent.h"

#include <QByteArray>
#include <QDeadlineTimer>
#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <cstdlib>
#include <functional>
#include <memory>
#include <vector>

/// An X server without a screen, for one test, with the programs that the test starts in it.
///
/// It needs no application object, so that it can be started before one is made. Everything that
/// was started ends with it, one by one and by its process number.
class PrivateDesktop
{
public:
    PrivateDesktop()
    {
        m_environment = QProcessEnvironment::systemEnvironment();
        for (const char *name :
             {"DISPLAY", "WAYLAND_DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "SESSION_MANAGER",
              "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "QT_QPA_PLATFORM"})
            m_environment.remove(QString::fromLatin1(name));
        setVariable("HOME", m_folder.path());
        setVariable("XDG_RUNTIME_DIR", m_folder.path());
        setVariable("LC_ALL", QStringLiteral("C.UTF-8"));
        setVariable("GTK_USE_PORTAL", QStringLiteral("0"));
        setVariable("NO_AT_BRIDGE", QStringLiteral("1"));
        // Programs must not find, nor start, a bus that is not the test's own.
        setVariable("DBUS_SESSION_BUS_ADDRESS", QStringLiteral("disabled:"));
    }

    ~PrivateDesktop()
    {
        // The last one started goes first, and the server last.
        while (!m_processes.empty())
            end(*m_processes.back());
    }

    PrivateDesktop(const PrivateDesktop &) = delete;
    PrivateDesktop &operator=(const PrivateDesktop &) = delete;

    /// Starts the server and makes it the display of this process. False if that fails.
    bool start(const QStringList &serverArguments = {})
    {
        QProcess &server =
            launch(QStringLiteral("Xvfb"),
                   QStringList{QStringLiteral("-displayfd"), QStringLiteral("1"),
                               QStringLiteral("-screen"), QStringLiteral("0"),
                               QStringLiteral("1024x768x24"), QStringLiteral("-noreset"),
                               QStringLiteral("-nolisten"), QStringLiteral("tcp")} +
                       serverArguments);
        while (!server.canReadLine()) {
            if (!server.waitForReadyRead(10000))
                return false;
        }
        m_displayName = ':' + server.readLine().trimmed();
        setVariable("DISPLAY", QString::fromLatin1(m_displayName));
        qputenv("DISPLAY", m_displayName);
        return true;
    }

    /// Starts a session bus for the programs that are launched from now on. Returns its address;
    /// this process does not use it by itself.
    QString startBus()
    {
        QProcess &bus =
            launch(QStringLiteral("dbus-daemon"),
                   {QStringLiteral("--session"), QStringLiteral("--nofork"),
                    QStringLiteral("--nopidfile"), QStringLiteral("--print-address=1")});
        while (!bus.canReadLine()) {
            if (!bus.waitForReadyRead(10000))
                return {};
        }
        const QString address = QString::fromLatin1(bus.readLine()).trimmed();
        setVariable("DBUS_SESSION_BUS_ADDRESS", address);
        return address;
    }

    const QByteArray &displayName() const { return m_displayName; }
    QString folder() const { return m_folder.path(); }
    void setVariable(const char *name, const QString &value)
    {
        m_environment.insert(QString::fromLatin1(name), value);
    }

    /// Starts a program that goes on until end() or until the desktop ends.
    QProcess &launch(const QString &program, const QStringList &arguments = {})
    {
        auto process = std::make_unique<QProcess>();
        process->setProcessEnvironment(m_environment);
        process->setStandardInputFile(QProcess::nullDevice());
        if (program != QLatin1String("Xvfb") && program != QLatin1String("dbus-daemon"))
            process->setStandardOutputFile(QProcess::nullDevice());
        process->setStandardErrorFile(QProcess::nullDevice());
        process->setChildProcessModifier(endWithParent);
        process->start(program, arguments);
        process->waitForStarted();
        m_processes.push_back(std::move(process));
        return *m_processes.back();
    }

    void end(QProcess &process)
    {
        process.terminate();
        if (!process.waitForFinished(3000)) {
            process.kill();
            process.waitForFinished(3000);
        }
        std::erase_if(m_processes, [&process](const auto &own) { return own.get() == &process; });
    }

    /// Ends all that was launched since start(); the server stays.
    void endPrograms()
    {
        while (m_processes.size() > 1)
            end(*m_processes.back());
    }

    /// Runs a program to its end and returns what it printed.
    QByteArray run(const QString &program, const QStringList &arguments = {},
                   const QByteArray &input = {}) const
    {
        QProcess process;
        process.setProcessEnvironment(m_environment);
        process.setStandardErrorFile(QProcess::nullDevice());
        process.start(program, arguments);
        process.write(input);
        process.closeWriteChannel();
        process.waitForFinished(20000);
        return process.readAllStandardOutput();
    }

    /// \a arguments as one would type them.
    QByteArray xdotool(const QString &arguments) const
    {
        return run(QStringLiteral("xdotool"), arguments.split(u' ', Qt::SkipEmptyParts));
    }

    /// Starts a window manager and waits until it is in charge; null if it did not come up.
    QProcess *startWindowManager(const QString &program, const QStringList &arguments = {})
    {
        QProcess &manager = launch(program, arguments);
        // To take the focus is its last step. Windows that come before may stay without a manager.
        const auto isReady = [this] { return isWindowManaged() && isFocusOnWindow(); };
        return waitUntil(isReady) ? &manager : nullptr;
    }

    /// Starts a program and waits for its window; 0 if none came.
    quint32 openWindow(const QString &program, const QStringList &arguments,
                       const QString &windowClass)
    {
        const QProcess &process = launch(program, arguments);
        return searchWindow(
            QStringLiteral("--all --pid %1 --class %2").arg(process.processId()).arg(windowClass));
    }

    quint32 findWindow(const QString &windowClass) const
    {
        return searchWindow(QStringLiteral("--class ") + windowClass);
    }

    /// Brings a window to the front. A window manager that has not taken charge of a new window yet
    /// does not listen, so it is asked again and again.
    bool activate(quint32 window) const
    {
        return waitUntil([&] {
            xdotool(QStringLiteral("windowactivate %1").arg(window));
            return xdotool(QStringLiteral("getactivewindow")).trimmed().toUInt() == window;
        });
    }

    /// Sets the keyboard layouts, as in "us,ru", and makes one of them active.
    void setLayout(const QString &layouts, int group = 0) const
    {
        run(QStringLiteral("setxkbmap"), {QStringLiteral("-layout"), layouts});
        run(QStringLiteral("/usr/bin/python3"),
            {QStringLiteral("-c"),
             QStringLiteral("import ctypes, sys\n"
                            "x = ctypes.CDLL('libX11.so.6')\n"
                            "x.XOpenDisplay.restype = ctypes.c_void_p\n"
                            "d = ctypes.c_void_p(x.XOpenDisplay(None))\n"
                            "x.XkbLockGroup(d, 0x100, int(sys.argv[1]))\n"
                            "x.XSync(d, 0)\n"),
             QString::number(group)});
    }

    /// The text that lies on the CLIPBOARD selection.
    QByteArray clipboard() const
    {
        return run(QStringLiteral("timeout"),
                   {QStringLiteral("5"), QStringLiteral("xclip"), QStringLiteral("-o"),
                    QStringLiteral("-selection"), QStringLiteral("clipboard")});
    }

    /// Lets xclip own a selection ("clipboard" or "primary") with \a text.
    void own(const QString &selection, const QByteArray &text)
    {
        QFile file(m_folder.filePath(selection));
        if (file.open(QIODevice::WriteOnly))
            file.write(text);
        file.close();
        launch(QStringLiteral("xclip"), {QStringLiteral("-quiet"), QStringLiteral("-selection"),
                                         selection, QStringLiteral("-i"), file.fileName()});
        waitUntil([&] {
            return run(QStringLiteral("timeout"),
                       {QStringLiteral("5"), QStringLiteral("xclip"), QStringLiteral("-o"),
                        QStringLiteral("-selection"), selection}) == text;
        });
    }

    /// Asks again and again until \a condition holds. For conditions of other programs only: the
    /// event loop does not turn meanwhile.
    static bool waitUntil(const std::function<bool()> &condition, int seconds = 30)
    {
        const QDeadlineTimer deadline(seconds * 1000);
        while (!condition()) {
            if (deadline.hasExpired())
                return false;
            QThread::msleep(20);
        }
        return true;
    }

private:
    quint32 searchWindow(const QString &conditions) const
    {
        quint32 window = 0;
        waitUntil([&] {
            const QByteArray found = xdotool(QStringLiteral("search --onlyvisible ") + conditions);
            window = found.trimmed().split('\n').last().toUInt();
            return window != 0;
        });
        return window;
    }

    /// What an earlier window manager wrote on the root window may have outlived it, so the window
    /// that is named there is asked too.
    bool isWindowManaged() const
    {
        const QString property = QStringLiteral("_NET_SUPPORTING_WM_CHECK");
        const QByteArray answer = run(QStringLiteral("xprop"), {QStringLiteral("-root"), property});
        const QString window = QString::fromLatin1(answer.mid(answer.indexOf("# ") + 2).trimmed());
        return answer.contains("window id") &&
               run(QStringLiteral("xprop"), {QStringLiteral("-id"), window, property})
                   .contains("window id");
    }

    bool isFocusOnWindow() const
    {
        constexpr quint32 kPointerRoot = 1; // Where the focus is when no window has it.
        return run(QStringLiteral("xdotool"),
                   {QStringLiteral("getwindowfocus"), QStringLiteral("-f")})
                   .trimmed()
                   .toUInt()
            > kPointerRoot;
    }

    QTemporaryDir m_folder;
    QProcessEnvironment m_environment;
    QByteArray m_displayName;
    std::vector<std::unique_ptr<QProcess>> m_processes;
};

/// The main() of a test that is made with a desktop, on which its application is too.
template <typename Test>
int runOnPrivateDesktop(int argc, char *argv[])
{
    PrivateDesktop desktop;
    if (!desktop.start())
        return EXIT_FAILURE;
    qputenv("QT_QPA_PLATFORM", "xcb");
    QGuiApplication application(argc, argv);
    Test test(desktop);
    return QTest::qExec(&test, argc, argv);
}
