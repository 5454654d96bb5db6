#include "app/AppDelegate.h"
#include "app/HotkeyRefusalNotice.h"
#include "app/ItemCopier.h"
#include "app/ScopedFileLease.h"
#include "appearance/InterfaceFont.h"
#include "capture/ClipboardMonitor.h"
#include "capture/PrivacySettingsManager.h"
#include "core/ClipboardItemManager.h"
#include "foundation/CallbackHook.h"
#include "foundation/InternalCopies.h"
#include "foundation/Log.h"
#include "foundation/TextTools.h"
#include "foundation/UserDefaults.h"
#include "language/LanguageManager.h"
#include "persistence/OpenHistoryStore.h"
#include "platform/linux/AccessibilityBus.h"
#include "platform/linux/DBusNotifications.h"
#include "platform/linux/DescriptorFileAccess.h"
#include "platform/linux/FileManagerViewer.h"
#include "platform/linux/InodeBookmarks.h"
#include "platform/linux/QtImageCodec.h"
#include "platform/linux/QtScheduler.h"
#include "platform/linux/SessionBus.h"
#include "platform/linux/SocketSingleInstance.h"
#include "platform/linux/SystemClock.h"
#include "platform/linux/TerminalStop.h"
#include "platform/linux/TerminationDeadline.h"
#include "platform/linux/TerminationSignals.h"
#include "platform/linux/ThemedIcons.h"
#include "platform/linux/UnexpectedExit.h"
#include "platform/x11/X11Platform.h"
#include "platform/x11/X11Settings.h"
#include "settings/HotkeySettingsManager.h"
#include "settings/SettingsWindow.h"
#include "tags/TagManager.h"
#include "window/ApplicationNames.h"
#include "window/HistoryWindowFactory.h"
#include "window/ShellKeeper.h"
#include "window/RowPictures.h"

#include <QApplication>
#include <QSessionManager>
#include <QStandardPaths>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include <malloc.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// The start itself is over by then.
constexpr auto kWarmUpDelay = 300ms;

/// Many large pictures take some seconds; sessions that end wait a little longer than this.
constexpr auto kTerminationPatience = 10s;

QString applicationSupportDirectory()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/tessarine"_s;
}

/// What is pasted into a text field is short and has one line.
constexpr qsizetype kMaxFieldText = 1000;

QString lineOnPasteboard(const Pasteboard &pasteboard)
{
    const PasteboardSnapshot snapshot = pasteboard.snapshot();
    return snapshot.string ? singleLine(snapshot.string->utf8(), kMaxFieldText) : QString();
}

/// Something without which nothing can work is missing.
int fail(const char *reason)
{
    std::fprintf(stderr, "tessarine: %s\n", reason);
    return EXIT_FAILURE;
}

/// Tells when the session's languages have changed.
class Application : public QApplication
{
public:
    using QApplication::QApplication;

    std::function<void()> onLocaleChanged;

protected:
    bool event(QEvent *event) override
    {
        if (event->type() == QEvent::LocaleChange && onLocaleChanged)
            onLocaleChanged();
        return QApplication::event(event);
    }
};

/// What the launcher gave along. It is for this process alone, so no other inherits it.
QString takeLaunchToken()
{
    QString token;
    for (const char *name : {"XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"}) {
        if (!qEnvironmentVariableIsEmpty(name))
            token = qEnvironmentVariable(name);
        qunsetenv(name);
    }
    return token;
}

/// Who wants the program in each session has an entry that starts it there. If it were part of a
/// saved session as well, it would be started twice, and its window would come up unasked.
void keepOutOfSavedSessions(const QGuiApplication &application)
{
    const auto forget = [](QSessionManager &manager) {
        manager.setRestartHint(QSessionManager::RestartNever);
    };
    QObject::connect(&application, &QGuiApplication::commitDataRequest, forget);
    QObject::connect(&application, &QGuiApplication::saveStateRequest, forget);
}

/// What everything else stands on.
struct Ground
{
    explicit Ground(Application &application)
    {
        languages.install();
        application.onLocaleChanged = [this] { languages.systemLocaleChanged(); };
        platform = makeX11Platform(codec, scheduler);
        if (!platform->appearance().isComposited())
            printLine(u"No compositor runs: the history window is opaque"_s);
    }

    /// Ends after all that has to be written.
    TerminationDeadline terminationDeadline{kTerminationPatience};
    const SystemClock clock;
    QtScheduler scheduler;
    UserDefaults defaults;
    LanguageManager languages{defaults};
    const QtImageCodec codec;
    std::unique_ptr<Platform> platform;
};

/// The rooms of the program, each with what it needs.
struct Program
{
    explicit Program(Ground &standsOn) : ground(standsOn) {}

    Ground &ground;
    Platform &platform = *ground.platform;
    /// Before every view that measures by the fonts.
    const CallbackHook<> textScaleHook{platform.appearance().onChanged, [this] {
        setInterfaceTextScale(platform.appearance().textScale());
    }};
    const QString directory = applicationSupportDirectory();
    const BoundedCalls fileCalls;
    const InodeBookmarks bookmarks{fileCalls};
    const DescriptorFileAccess fileAccess{fileCalls};
    const FileReferences fileReferences{bookmarks, fileAccess, ground.defaults};
    ClipboardItemManager itemManager{openHistoryStore(directory, ground.clock),
                                     ImageStorage(imagesDirectoryIn(directory), ground.codec,
                                                  ground.defaults, ground.clock),
                                     fileReferences, ground.defaults, ground.clock};
    PrivacySettingsManager privacySettings{ground.defaults};
    HotkeySettingsManager hotkeySettings{ground.defaults};
    ClipboardMonitor monitor{platform.pasteboard(), ground.scheduler, ground.clock,
                             itemManager,           privacySettings,  fileReferences};
    ScopedFileLease fileLease{fileReferences, ground.scheduler, ground.clock, ground.defaults};
    PastePipeline pastePipeline{platform.pasteboard(),     platform.workspace(),
                                platform.pasteKeystroke(), ground.scheduler,
                                monitor,                   itemManager,
                                ground.defaults,           ground.codec,
                                fileLease};
    InternalCopies internalCopies;
    ItemCopier itemCopier{internalCopies, platform.pasteboard(), itemManager};
    ApplicationNames applicationNames{platform.workspace()};
    RowPictures pictures{itemManager.imagesDirectory(), ground.codec,
                         std::make_shared<const ThemedIcons>(x11IconThemeName)};
    TagManager tagManager{ground.defaults};
    FileManagerViewer fileViewer{platform.workspace(), ground.scheduler};
    ShellKeeper shells{platform.workspace()};
    const HistoryWindowCollaborators windowCollaborators{
        platform.workspace(), platform.pointerMonitor(), platform.appearance(), ground.defaults,
        shells,
        HistoryListCollaborators{
            .workspace = platform.workspace(),
            .itemManager = itemManager,
            .tagManager = tagManager,
            .fileViewer = fileViewer,
            .applicationNames = applicationNames,
            .pictures = pictures,
            .scheduler = ground.scheduler,
            .clock = ground.clock,
            .defaults = ground.defaults,
            .copyItem = [this](const ClipboardItem &item) { itemCopier.copyItem(item); },
            .beep = [] { QApplication::beep(); },
            .pasteboardText = [this] { return lineOnPasteboard(platform.pasteboard()); }}};
    const SettingsCollaborators settingsCollaborators{
        platform.workspace(), platform.appearance(), platform.globalHotkey(),
        ground.defaults,      ground.languages,      hotkeySettings};
    DBusNotifications notifications;
    HotkeyRefusalNotice hotkeyRefusalNotice{ground.defaults, notifications};
    AppDelegate delegate{AppDelegate::Collaborators{
        .itemManager = itemManager,
        .monitor = monitor,
        .pastePipeline = pastePipeline,
        .hotkeySettings = hotkeySettings,
        .languages = ground.languages,
        .internalCopies = internalCopies,
        .globalHotkey = platform.globalHotkey(),
        .hotkeyRefusalNotice = hotkeyRefusalNotice,
        .statusItem = platform.statusItem(),
        .workspace = platform.workspace(),
        .appearance = platform.appearance(),
        .scheduler = ground.scheduler,
        .makeWindow = [this](const ClipboardItemList &items) {
            return makeHistoryWindow(windowCollaborators, items);
        },
        .makeSettingsWindow = [this] { return makeSettingsWindow(settingsCollaborators); }}};
};

void connectInstance(SingleInstance &instance, Program &program)
{
    instance.onActivated = [&program](const QString &activationToken) {
        program.platform.workspace().noteUserAction(activationToken);
        program.delegate.applicationDidBecomeActive();
    };
    instance.listen();
}

int runApplication(Application &application, SingleInstance &instance, const QString &launchToken)
{
    Ground ground(application);
    Program program(ground);
    AppDelegate &delegate = program.delegate;
    connectInstance(instance, program);
    ground.platform->onLost = [] {
        printLine(u"The display has ended the connection: Tessarine quits"_s);
        // As where the library that draws notices it first.
        QCoreApplication::exit(EXIT_FAILURE);
    };
    const TerminationSignals termination([&delegate] { delegate.terminate(); });
    GlobalHotkey &hotkey = ground.platform->globalHotkey();
    const TerminalStop terminalStop([&hotkey] { hotkey.suspend(); }, [&hotkey] { hotkey.resume(); });
    const auto terminate = [&] {
        ground.terminationDeadline.start();
        delegate.applicationWillTerminate();
    };
    QObject::connect(&application, &QCoreApplication::aboutToQuit, &delegate, terminate);
    delegate.applicationDidFinishLaunching();
    if (!launchToken.isEmpty())
        program.platform.workspace().noteUserAction(launchToken);
    ground.scheduler.runAfter(kWarmUpDelay,
                              [&] { warmUpHistoryWindow(program.windowCollaborators); });
    const UnexpectedExit unexpectedExit(terminate);
    const int status = QApplication::exec();
    instance.onActivated = nullptr;
    application.onLocaleChanged = nullptr;
    return status;
}

/// In a session with Wayland Qt might draw there, and the rest of the program is on X11. Qt is told
/// by an argument, since the programs that we start would inherit a variable.
std::vector<char *> argumentsForX11(int argc, char *argv[])
{
    static char option[] = "-platform";
    static char platform[] = "xcb";
    std::vector<char *> arguments(argv, argv + argc);
    if (argc > 0 && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        arguments.insert(arguments.begin() + 1, {option, platform});
    return arguments;
}

int launchFirst(int argc, char *argv[], SingleInstance &instance, const QString &launchToken)
{
    requireX11Display();
    leaveBrokenSessionBus();
    leaveBrokenAccessibilityBus();
    std::vector<char *> arguments = argumentsForX11(argc, argv);
    int argumentCount = int(arguments.size());
    QApplication::setApplicationName(u"tessarine"_s);
    QApplication::setApplicationVersion(QStringLiteral(TESSARINE_VERSION));
    QApplication::setDesktopFileName(u"tessarine"_s);
    Application application(argumentCount, arguments.data());
    restoreAccessibilityBusVariable();
    keepOutOfSavedSessions(application);
    return runApplication(application, instance, launchToken);
}

/// The application is not made before it is known to be needed: it is what takes time at a start.
int launch(int argc, char *argv[])
{
    const QString launchToken = takeLaunchToken();
    SocketSingleInstance instance(applicationSupportDirectory());
    while (instance.claim() == SingleInstance::Role::Second) {
        switch (instance.activateFirst(launchToken)) {
        case SingleInstance::Answer::Shown:
            printLine(u"Tessarine is already running; its window was asked to show"_s);
            return EXIT_SUCCESS;
        case SingleInstance::Answer::None:
            return fail("another instance is running, and it does not answer");
        case SingleInstance::Answer::Ended: break;
        }
    }
    return launchFirst(argc, argv, instance, launchToken);
}

/// What is larger gets pages of its own, which go back when it ends. Left alone, the allocator
/// raises this with the first large picture, and then keeps the memory of a picture for ever.
constexpr int kLargeAllocation = 128 << 10;

} // namespace

int main(int argc, char *argv[])
{
    mallopt(M_MMAP_THRESHOLD, kLargeAllocation);
    // Entries are made on one thread and freed on another. With a heap for each, the room of the
    // entries that have gone is of no use to those that come.
    mallopt(M_ARENA_MAX, 1);
    // Who reads our output may go; the history goes on.
    std::signal(SIGPIPE, SIG_IGN);
    try {
        return launch(argc, argv);
    } catch (const std::exception &error) {
        return fail(error.what());
    }
}
