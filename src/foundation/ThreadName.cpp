#include "foundation/ThreadName.h"

#include <pthread.h>

void nameCurrentThread(const std::string &label)
{
    // The kernel keeps 15 characters.
    const auto dot = label.rfind('.');
    const std::string shortName = dot == std::string::npos ? label : label.substr(dot + 1);
    pthread_setname_np(pthread_self(), shortName.substr(0, 15).c_str());
}
