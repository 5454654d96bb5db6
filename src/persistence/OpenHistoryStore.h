#pragma once

#include "core/ClipboardHistoryStore.h"

#include <memory>

class Clock;

/// The directory of the image files in \a baseDirectory.
QString imagesDirectoryIn(const QString &baseDirectory);

/// Creates the directories of the history and opens the database in it. If that is not possible, a
/// printed line tells why, and the store of this run is a JSON file beside it. Which store it was is
/// not remembered, and neither store reads what the other wrote. \a clock must outlive the store.
std::unique_ptr<ClipboardHistoryStore> openHistoryStore(const QString &baseDirectory,
                                                        const Clock &clock);
