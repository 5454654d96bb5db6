#include "window/SearchPreparation.h"

#include "foundation/FreeMemory.h"
#include "platform/Scheduler.h"
#include "window/ApplicationNames.h"

#include <QSet>

using namespace std::chrono_literals;

namespace {

/// The window has come up by then, and nobody types sooner.
constexpr auto kAfterOpening = 200ms;

/// Letters that follow each other faster than that do not wait for the reading, which would take
/// their time.
constexpr auto kAfterLetter = 40ms;

constexpr qsizetype kMostReadBytes = 32 * 1024 * 1024;

QStringList sourcesOf(const ClipboardItemList &items)
{
    QSet<QString> sources;
    for (const ClipboardItemPointer &item : items) {
        if (item->sourceAppBundleID && !item->sourceAppBundleID->isEmpty())
            sources.insert(*item->sourceAppBundleID);
    }
    return sources.values();
}

} // namespace

SearchPreparation::SearchPreparation(Scheduler &scheduler, ApplicationNames &names,
                                     const ClipboardItemList &items)
    : m_scheduler(scheduler)
    , m_names(names)
    , m_items(items)
    , m_nextStep(scheduler.after(kAfterOpening, [this] { begin(); }))
{
}

SearchPreparation::~SearchPreparation()
{
    if (!m_reader)
        return;
    m_reader.reset();
    returnFreeMemory();
}

void SearchPreparation::readAhead(const ClipboardItemList &matches)
{
    m_nextReading = m_scheduler.after(
        kAfterLetter, [this, matches] { m_reader.emplace(matches, kMostReadBytes); });
}

void SearchPreparation::read(const ClipboardItemList &items, std::function<void()> onRead)
{
    m_nextReading.reset();
    const auto announce = [this, reading = ++m_reading, onRead = std::move(onRead)] {
        if (reading == m_reading)
            onRead();
    };
    m_reader.emplace(items, kMostReadBytes, [this, announce] {
        QMetaObject::invokeMethod(&m_context, announce, Qt::QueuedConnection);
    });
}

void SearchPreparation::begin()
{
    m_bundleIDs = sourcesOf(m_items);
    m_signer.emplace(std::exchange(m_items, {}));
    lookUpNextName();
}

/// One at a time, with the event loop in between: each may have to look through folders.
void SearchPreparation::lookUpNextName()
{
    if (m_bundleIDs.isEmpty())
        return;
    m_names.appDisplayName(m_bundleIDs.takeLast());
    m_nextStep = m_scheduler.after(0ms, [this] { lookUpNextName(); });
}
