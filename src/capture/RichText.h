#pragma once

#include "foundation/Utf8Text.h"

#include <QByteArray>

#include <optional>

/// The plain text of styled content that came without one: of the HTML, and where that gives
/// nothing of the RTF. Trimmed; absent if there is no text in either. Any thread.
std::optional<Utf8Text> richTextPlainString(const std::optional<QByteArray> &html,
                                            const std::optional<QByteArray> &rtf);
