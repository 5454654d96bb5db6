#pragma once

#include "core/ClipboardItem.h"
#include "platform/Pasteboard.h"

/// Adds the text of \a item and its rich forms, each that is there, as they were copied. Also the
/// URL of a link whose text is one. What the history cannot read back any more is left out; the
/// result is false then.
[[nodiscard]] bool writeTextFamilyToPasteboard(const ClipboardItem &item,
                                               PasteboardContents &pasteboard);
