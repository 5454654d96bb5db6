#pragma once

#include "appearance/SystemColors.h"
#include "tags/Tag.h"

/// What tags of \a color are drawn with.
QColor systemColor(TagColor color, ColorScheme scheme);
