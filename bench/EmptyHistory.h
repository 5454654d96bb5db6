#pragma once

#include "core/ClipboardItemManager.h"
#include "foundation/UserDefaults.h"
#include "persistence/OpenHistoryStore.h"
#include "platform/linux/DescriptorFileAccess.h"
#include "platform/linux/InodeBookmarks.h"
#include "platform/linux/QtImageCodec.h"
#include "platform/linux/SystemClock.h"

#include <QTemporaryDir>

/// A directory for a history on disk, and what is needed to open it.
class EmptyHistory
{
public:
    QString base() const { return m_directory.filePath(QStringLiteral("tessarine")); }
    QString imagesDirectory() const { return imagesDirectoryIn(base()); }

    std::unique_ptr<ClipboardHistoryStore> openStore() { return openHistoryStore(base(), m_clock); }

    ImageStorage openStorage()
    {
        return ImageStorage(imagesDirectory(), m_codec, m_defaults, m_clock);
    }

    std::unique_ptr<ClipboardItemManager> openManager()
    {
        return std::make_unique<ClipboardItemManager>(openStore(), openStorage(), m_fileReferences,
                                                      m_defaults, m_clock);
    }

    const QtImageCodec &codec() const { return m_codec; }

protected:
    SystemClock m_clock;
    QtImageCodec m_codec;
    QTemporaryDir m_directory;
    UserDefaults m_defaults{m_directory.filePath(QStringLiteral("tessarine.conf"))};

private:
    InodeBookmarks m_bookmarks;
    DescriptorFileAccess m_fileAccess;
    FileReferences m_fileReferences{m_bookmarks, m_fileAccess, m_defaults};
};
