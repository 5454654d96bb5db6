#pragma once

#include "core/ClipboardItemManager.h"
#include "foundation/UserDefaults.h"
#include "tests/fakes/FakeClock.h"
#include "tests/fakes/FakeFiles.h"
#include "tests/fakes/FakeImageCodec.h"
#include "tests/fakes/MemoryHistoryStore.h"
#include "tests/fakes/PrintedLines.h"

#include <QDir>
#include <QTemporaryDir>

#include <optional>

/// A base of tests that need a history: a manager on a store in memory, with files in a directory of
/// its own that goes with it.
class HistoryFixture
{
protected:
    /// Begins with nothing at all.
    void setUpHistory()
    {
        tearDownHistory();
        m_clock = std::make_unique<FakeClock>();
        m_codec = std::make_unique<FakeImageCodec>();
        m_directory = std::make_unique<QTemporaryDir>();
        m_images = m_directory->filePath(QStringLiteral("images"));
        QDir().mkpath(m_images);
        m_printed.emplace();
        m_defaults = std::make_unique<UserDefaults>(
            m_directory->filePath(QStringLiteral("tessarine.conf")));
        m_files = std::make_unique<FakeFiles>(*m_defaults);
        m_history = std::make_shared<MemoryHistory>();
        openHistory();
    }

    /// Begins anew with what the store holds.
    void openHistory()
    {
        m_manager.reset();
        m_history->calls.clear();
        m_manager = std::make_unique<ClipboardItemManager>(
            std::make_unique<MemoryHistoryStore>(m_history),
            ImageStorage(m_images, *m_codec, *m_defaults, *m_clock), m_files->references,
            *m_defaults, *m_clock);
    }

    /// The settings are written at their end, so they end before their directory.
    void tearDownHistory()
    {
        m_manager.reset();
        m_history.reset();
        m_files.reset();
        m_defaults.reset();
        m_printed.reset();
        m_directory.reset();
    }

    QStringList callsSinceLoading() const { return m_history->callsSoFar().mid(1); }

    std::unique_ptr<FakeClock> m_clock;
    std::unique_ptr<FakeImageCodec> m_codec;
    std::unique_ptr<QTemporaryDir> m_directory;
    QString m_images; ///< The directory of the image files.
    std::optional<PrintedLines> m_printed;
    std::unique_ptr<UserDefaults> m_defaults;
    std::unique_ptr<FakeFiles> m_files;
    std::shared_ptr<MemoryHistory> m_history;
    std::unique_ptr<ClipboardItemManager> m_manager;
};
