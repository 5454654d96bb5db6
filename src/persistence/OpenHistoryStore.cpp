#include "persistence/OpenHistoryStore.h"

#include "foundation/Log.h"
#include "foundation/PrivateFiles.h"
#include "persistence/JSONClipboardHistoryStore.h"
#include "persistence/SwiftDataClipboardHistoryStore.h"

#include <QDir>

using namespace Qt::StringLiterals;

QString imagesDirectoryIn(const QString &baseDirectory)
{
    return QDir(baseDirectory).filePath(u"images"_s);
}

std::unique_ptr<ClipboardHistoryStore> openHistoryStore(const QString &baseDirectory,
                                                        const Clock &clock)
{
    // Without its directory the store fails, and that is told then.
    [[maybe_unused]] const bool areThere = ensurePrivateDirectory(baseDirectory)
        && ensurePrivateDirectory(imagesDirectoryIn(baseDirectory));
    const QDir directory(baseDirectory);
    try {
        return std::make_unique<SwiftDataClipboardHistoryStore>(
            directory.filePath(u"clipboard_history.store"_s), clock);
    } catch (const StoreError &error) {
        printLine(u"Failed to initialize SwiftData store, fallback to JSON: "_s
                  + QString::fromUtf8(error.what()));
    }
    return std::make_unique<JSONClipboardHistoryStore>(
        directory.filePath(u"clipboard_history.json"_s), clock);
}
