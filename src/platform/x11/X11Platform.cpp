#include "platform/x11/X11Platform.h"

std::unique_ptr<Platform> makeX11Platform(const ImageCodec &)
{
    throw PlatformError("not here yet");
}
