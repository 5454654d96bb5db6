#pragma once

#include "platform/Platform.h"

#include <memory>

class ImageCodec;
class Scheduler;

/// To be called before the application object is made, which ends the process where there is no
/// display.
/// \throws PlatformError if the display of the environment cannot be used.
void requireX11Display();

/// The X11 desktop of the display that the application runs on. What is handed over
/// must outlive it.
/// \throws PlatformError if the display cannot be used.
std::unique_ptr<Platform> makeX11Platform(const ImageCodec &codec, Scheduler &scheduler);
