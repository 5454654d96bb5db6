#pragma once

#include "appearance/Look.h"

class DesktopAppearance;

/// What the desktop asks for now; where it does not tell light from dark, what its own windows look
/// like.
Look desktopLook(const DesktopAppearance &appearance);
