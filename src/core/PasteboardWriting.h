#pragma once

#include "core/ClipboardItem.h"
#include "platform/Pasteboard.h"

/// The text of \a item and its rich forms, each that is there, as they were copied. Also the URL of
/// a link whose text is one. What the history cannot read back any more is left out.
PasteboardContents textFamilyContents(const ClipboardItem &item);
