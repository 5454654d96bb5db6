#pragma once

#include "core/ClipboardItem.h"

/// How many bytes \a items hold: texts, rich data, paths and bookmarks, and the files in
/// \a imagesDirectory that they name, each once. What the store adds to them is not counted.
qint64 diskUsageBytes(const ClipboardItemList &items, const QString &imagesDirectory);
