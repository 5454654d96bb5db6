#include "app/DismissingPress.h"

#include "platform/Scheduler.h"

using namespace std::chrono_literals;

namespace {

/// Longer than buttons are held for a click, shorter than the way from elsewhere to the icon.
constexpr auto kLongestClick = 500ms;

} // namespace

DismissingPress::DismissingPress(Scheduler &scheduler)
    : m_scheduler(scheduler)
{
}

DismissingPress::~DismissingPress() = default;

void DismissingPress::note()
{
    m_expiry = m_scheduler.after(kLongestClick, [this] { m_expiry.reset(); });
}

bool DismissingPress::takeClick()
{
    return std::exchange(m_expiry, nullptr) != nullptr;
}
