// Opens the history in a data directory as the program does, and does with it what a person does in
// the settings: "limit" removes what is beyond the limits and every image file that no entry names,
// "clear" removes everything and compacts the store.
//
//     HistoryUpkeep limit|clear BASE-DIRECTORY SETTINGS-FILE

#include "core/ClipboardItemManager.h"
#include "foundation/UserDefaults.h"
#include "persistence/OpenHistoryStore.h"
#include "platform/linux/DescriptorFileAccess.h"
#include "platform/linux/InodeBookmarks.h"
#include "platform/linux/QtImageCodec.h"
#include "platform/linux/SystemClock.h"

#include <QCoreApplication>

#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString task = arguments.value(1);
    if (arguments.size() != 4 || (task != u"limit"_s && task != u"clear"_s)) {
        std::fputs("usage: HistoryUpkeep limit|clear BASE-DIRECTORY SETTINGS-FILE\n", stderr);
        return EXIT_FAILURE;
    }
    const QString &base = arguments.at(2);
    const UserDefaults defaults(arguments.at(3));
    const SystemClock clock;
    const QtImageCodec codec;
    const InodeBookmarks bookmarks;
    const DescriptorFileAccess fileAccess;
    const FileReferences fileReferences(bookmarks, fileAccess, defaults);
    ClipboardItemManager manager(openHistoryStore(base, clock),
                                 ImageStorage(imagesDirectoryIn(base), codec, defaults, clock),
                                 fileReferences, defaults, clock);
    if (task == u"clear"_s)
        manager.clearHistory(ClipboardItemManager::Favorites::Clear, {});
    else
        manager.enforceCurrentLimits({});
    manager.drain();
    return EXIT_SUCCESS;
}
