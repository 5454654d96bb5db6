#pragma once

#include "window/LongTextReader.h"
#include "window/LongTextSigner.h"

#include <QObject>
#include <QStringList>

#include <functional>
#include <optional>

class ApplicationNames;
class ScheduledWork;
class Scheduler;

/// Does what searches in a history will need while the person has not typed yet, so that no key has
/// to wait for a disk. A search gives the same without. Main thread.
class SearchPreparation
{
public:
    /// Begins soon, when the window that shows \a items stands. \a scheduler and \a names must
    /// outlive the object.
    SearchPreparation(Scheduler &scheduler, ApplicationNames &names,
                      const ClipboardItemList &items);
    ~SearchPreparation();

    /// A search has found \a matches; the next letters will narrow them.
    void readAhead(const ClipboardItemList &matches);

    /// A search needs the long texts of \a items. Once they are at hand \a onRead is called, unless
    /// others have been asked for by then.
    void read(const ClipboardItemList &items, std::function<void()> onRead);

private:
    void begin();
    void lookUpNextName();

    Scheduler &m_scheduler;
    ApplicationNames &m_names;
    ClipboardItemList m_items;
    QStringList m_bundleIDs; ///< Those of which the name is still to be looked up.
    std::optional<LongTextSigner> m_signer;
    QObject m_context; ///< For what comes back from the reader.
    quint64 m_reading = 0; ///< Counts what the reader was asked for.
    std::optional<LongTextReader> m_reader;
    std::unique_ptr<ScheduledWork> m_nextStep;
    std::unique_ptr<ScheduledWork> m_nextReading;
};
