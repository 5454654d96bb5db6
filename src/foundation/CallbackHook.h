#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

/// Listens on a callback of the platform for as long as it lives, without taking it from whoever
/// listened there before. Hooks on the same callback may end in any order, also while it is called.
template <typename... Arguments>
class CallbackHook
{
public:
    using Callback = std::function<void(Arguments...)>;

    /// \a callback must outlive the hook.
    CallbackHook(Callback &callback, Callback listener)
        : m_callback(callback)
        , m_listener(std::make_shared<Callback>(std::move(listener)))
    {
        if (!chain())
            m_callback = Chain{std::move(m_callback), {}};
        chain()->listeners.push_back(m_listener);
    }

    ~CallbackHook()
    {
        Chain *const present = chain();
        if (!present)
            return;
        std::erase_if(present->listeners, [this](const auto &known) {
            return known.expired() || known.lock() == m_listener;
        });
        // An owner looks at its callback to see whether anybody listens.
        if (present->listeners.empty())
            m_callback = Callback(std::move(present->former));
    }

    CallbackHook(const CallbackHook &) = delete;
    CallbackHook &operator=(const CallbackHook &) = delete;

private:
    /// What stands in the place of the callback while there are hooks.
    struct Chain
    {
        Callback former;
        std::vector<std::weak_ptr<Callback>> listeners;

        void operator()(Arguments... arguments) const
        {
            // Listeners may begin and end other hooks, and with the last one this chain.
            const auto present = listeners;
            if (former)
                former(arguments...);
            for (const auto &known : present) {
                if (const auto listener = known.lock())
                    (*listener)(arguments...);
            }
        }
    };

    Chain *chain() { return m_callback.template target<Chain>(); }

    Callback &m_callback;
    std::shared_ptr<Callback> m_listener;
};
