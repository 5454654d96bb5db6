#pragma once

#include "platform/Platform.h"

#include <memory>

class ImageCodec;

/// The X11 desktop of the display that the application runs on. The codec must outlive it.
/// \throws PlatformError if the display cannot be used.
std::unique_ptr<Platform> makeX11Platform(const ImageCodec &codec);
