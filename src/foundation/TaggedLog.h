#pragma once

#include "foundation/Log.h"
#include "foundation/UserDefaults.h"

/// Prints lines with the tag "[DragPaste] " while the user default "debug.drag_paste_logging" is
/// true. \a makeText is only called then, so that a silent line costs no text.
template <typename MakeText>
void logDragPaste(const UserDefaults &defaults, MakeText makeText)
{
    if (defaults.boolean(QStringLiteral("debug.drag_paste_logging")))
        printLine(QStringLiteral("[DragPaste] ") + makeText());
}
