#pragma once

#include "platform/GlobalHotkey.h"

#include <map>
#include <optional>
#include <utility>

/// A hot key that a test presses by calling onPressed.
class FakeGlobalHotkey : public GlobalHotkey
{
public:
    int assign(quint32 keyCode, quint32 modifiers) override
    {
        if (refusal == 0)
            assigned = std::pair(keyCode, modifiers);
        return refusal;
    }

    void release() override
    {
        assigned.reset();
        ++releaseCount;
    }

    void suspend() override { isSuspended = true; }
    void resume() override { isSuspended = false; }

    bool isInForce() const override { return assigned.has_value(); }

    std::optional<quint32> findKeyCode(quint32 nativeKey) override
    {
        const auto key = keyCodes.find(nativeKey);
        return key == keyCodes.end() ? std::nullopt : std::optional(key->second);
    }

    int refusal = 0; ///< What assign() answers.
    std::optional<std::pair<quint32, quint32>> assigned;
    int releaseCount = 0;
    bool isSuspended = false;
    std::map<quint32, quint32> keyCodes; ///< By native key.
};
