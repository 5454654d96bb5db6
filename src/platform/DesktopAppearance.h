#pragma once

#include <functional>
#include <optional>

/// What the desktop says of its looks. Main thread only.
class DesktopAppearance
{
public:
    virtual ~DesktopAppearance() = default;

    /// The person's choice of light or dark; absent where the desktop does not tell (yet).
    virtual std::optional<bool> prefersDark() const = 0;

    /// Whether windows may be translucent now: a compositor runs.
    virtual bool isComposited() const = 0;

    /// Called after one of the answers has changed.
    std::function<void()> onChanged;
};
