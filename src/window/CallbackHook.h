#pragma once

#include <functional>
#include <utility>

/// Listens on a callback of the platform for as long as it lives, without taking it from whoever
/// listened there before. Hooks on the same callback end in the reverse order of their making.
template <typename... Arguments>
class CallbackHook
{
public:
    using Callback = std::function<void(Arguments...)>;

    /// \a callback must outlive the hook.
    CallbackHook(Callback &callback, Callback listener)
        : m_callback(callback)
        , m_former(callback)
    {
        callback = [former = m_former, own = std::move(listener)](Arguments... arguments) {
            if (former)
                former(arguments...);
            own(arguments...);
        };
    }
    ~CallbackHook() { m_callback = std::move(m_former); }

    CallbackHook(const CallbackHook &) = delete;
    CallbackHook &operator=(const CallbackHook &) = delete;

private:
    Callback &m_callback;
    Callback m_former;
};
