#include "platform/linux/UnexpectedExit.h"

#include <cstdlib>
#include <thread>
#include <utility>

namespace {

struct Watch
{
    std::function<void()> onExit;
    std::thread::id mainThread;
};

Watch &watch()
{
    // Never destroyed, since it is used while all other things are.
    static auto *instance = new Watch;
    return *instance;
}

void runOnExit()
{
    // On another thread the main one still runs, and uses what the function would end.
    if (std::this_thread::get_id() != watch().mainThread)
        return;
    if (const auto onExit = std::exchange(watch().onExit, nullptr))
        onExit();
}

} // namespace

UnexpectedExit::UnexpectedExit(std::function<void()> onExit)
{
    watch() = {std::move(onExit), std::this_thread::get_id()};
    std::atexit(runOnExit);
}

UnexpectedExit::~UnexpectedExit()
{
    watch().onExit = nullptr;
}
