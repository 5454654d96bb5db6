#pragma once

#include "foundation/Timestamp.h"

#include <QString>

class ApplicationNames;
struct ClipboardItem;
struct HistoryRow;

/// What a row of the list is for those who hear it: all that \a row shows, in whole words and in the
/// interface language. \a now is when the row was made.
///
/// The kind comes first, since it says what the words after it are: a text, an address, the name of a
/// file.
QString spokenRow(const ClipboardItem &item, const HistoryRow &row, ApplicationNames &names,
                  Timestamp now);
