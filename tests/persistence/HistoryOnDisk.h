#pragma once

#include "core/ClipboardItemManager.h"
#include "foundation/UserDefaults.h"
#include "persistence/OpenHistoryStore.h"
#include "tests/fakes/FakeClock.h"
#include "tests/fakes/FakeFiles.h"
#include "tests/fakes/FakeImageCodec.h"
#include "tests/fakes/PrintedLines.h"
#include "tests/fakes/SampleItems.h"
#include "tests/persistence/RawDatabase.h"

#include <QTemporaryDir>

#include <optional>

/// A history with its files in a directory of its own, as the program puts it together. It can be
/// ended, looked at or harmed, and started again.
class HistoryOnDisk
{
public:
    HistoryOnDisk() : m_defaults(base() + QStringLiteral("/tessarine.conf")) {}

    QString base() const { return m_directory.path(); }
    QString databasePath() const { return base() + QStringLiteral("/clipboard_history.store"); }
    QString logPath() const { return databasePath() + QStringLiteral("-wal"); }
    QString jsonPath() const { return base() + QStringLiteral("/clipboard_history.json"); }
    FakeClock &clock() { return m_clock; }

    void start()
    {
        m_manager.reset();
        m_printed.emplace();
        m_manager = std::make_unique<ClipboardItemManager>(
            openHistoryStore(base(), m_clock),
            ImageStorage(imagesDirectoryIn(base()), m_codec, m_defaults, m_clock),
            m_files.references, m_defaults, m_clock);
    }

    /// Ends with everything in the store.
    void end() { m_manager.reset(); }

    ClipboardItemManager &manager() { return *m_manager; }

    /// What was printed since the start.
    QStringList printed() const { return m_printed->lines(); }

    /// Whether the database was refused.
    bool isFallback() const
    {
        return printed().value(0).startsWith(
            QStringLiteral("Failed to initialize SwiftData store, fallback to JSON: "));
    }

    /// Adds a text, a second later than the last, and waits until it is stored.
    ClipboardItem add(const QString &text)
    {
        m_clock.advance(std::chrono::seconds(1));
        const ClipboardItem item = textItem(text, m_clock.now());
        m_manager->addItem(item);
        m_manager->drain();
        return item;
    }

    QStringList texts() const
    {
        QStringList texts;
        for (const ClipboardItemPointer &item : m_manager->items())
            texts.append(item->stringValue ? item->stringValue->toString() : QStringLiteral("-"));
        return texts;
    }

private:
    QTemporaryDir m_directory;
    FakeClock m_clock;
    FakeImageCodec m_codec;
    UserDefaults m_defaults;
    FakeFiles m_files{m_defaults};
    std::optional<PrintedLines> m_printed;
    std::unique_ptr<ClipboardItemManager> m_manager;
};
