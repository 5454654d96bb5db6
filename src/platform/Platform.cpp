#include "platform/Platform.h"

#include "platform/Clock.h"
#include "platform/ImageCodec.h"
#include "platform/Scheduler.h"
#include "platform/SingleInstance.h"
