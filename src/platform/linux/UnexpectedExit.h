#pragma once

#include <functional>

/// Runs a function before the process ends by std::exit() on the main thread while the object
/// lives.
///
/// So do libraries when the display or the session manager has gone, in the middle of the event
/// loop: nothing of ours would be told, since nothing on the stack is destroyed. One object in the
/// process, made on the main thread after all that the function uses.
class UnexpectedExit
{
public:
    explicit UnexpectedExit(std::function<void()> onExit);
    ~UnexpectedExit();
    UnexpectedExit(const UnexpectedExit &) = delete;
    UnexpectedExit &operator=(const UnexpectedExit &) = delete;
};
