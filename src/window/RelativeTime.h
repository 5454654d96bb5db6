#pragma once

#include "foundation/Timestamp.h"

#include <QString>

/// How long ago \a time was at \a now, short and in the interface language: "now", "3 min. ago",
/// "yesterday". A moment that is still to come is "now".
QString relativeTime(Timestamp time, Timestamp now);

/// The same in whole words, for those who hear it: "just now", "3 minutes ago", "yesterday".
QString spokenRelativeTime(Timestamp time, Timestamp now);
