#pragma once

struct ClipboardItem;

/// Whether there is something of \a item to be seen in large: a text that is not blank, or a
/// picture. May have to read a long text back.
bool canPreview(const ClipboardItem &item);
