// Opens the history in a data directory as the program does, and removes what is beyond its limits
// and every image file that no entry names: what a person does by lowering the limit.
//
//     HistorySweep BASE-DIRECTORY SETTINGS-FILE

#include "core/ClipboardItemManager.h"
#include "foundation/UserDefaults.h"
#include "persistence/OpenHistoryStore.h"
#include "platform/linux/SystemClock.h"

#include <QCoreApplication>

#include <cstdio>
#include <cstdlib>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3) {
        std::fputs("usage: HistorySweep BASE-DIRECTORY SETTINGS-FILE\n", stderr);
        return EXIT_FAILURE;
    }
    const QString &base = arguments.at(1);
    const UserDefaults defaults(arguments.at(2));
    const SystemClock clock;
    ClipboardItemManager manager(openHistoryStore(base, clock),
                                 ImageStorage(imagesDirectoryIn(base)), defaults, clock);
    manager.enforceCurrentLimits({});
    manager.drain();
    return EXIT_SUCCESS;
}
