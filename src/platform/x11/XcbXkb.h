#pragma once

// xcb's header for XKB calls a field "explicit", which only C allows. Included by .cpp files alone.
#define explicit isExplicit
#include <xcb/xkb.h>
#undef explicit
