#pragma once

#include "core/ClipboardItem.h"
#include "platform/Pasteboard.h"

/// The text of \a item and its rich forms, each that is there, as they were copied. Also the URL of
/// a link whose text is one.
PasteboardContents textFamilyContents(const ClipboardItem &item);
