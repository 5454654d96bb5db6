#pragma once

#include "capture/ClipboardCopy.h"
#include "core/ClipboardItem.h"

#include <optional>

/// The entry that \a copy makes: files before text, text before styled text alone, and any text
/// before a picture. Absent if there is nothing that can be kept; a printed line says what was
/// found. Any thread.
///
/// Only what takes long to make carries its content hash; for the rest the history computes it.
std::optional<ClipboardItem> makeClipboardItem(const ClipboardCopy &copy);

/// Whether making the entry may take more than a millisecond or two.
bool takesLongToMake(const ClipboardCopy &copy);
