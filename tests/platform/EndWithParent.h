#pragma once

#include <csignal>

#include <sys/prctl.h>

/// In a new child, before it becomes another program: it ends when the thread that started it does,
/// so that a test that aborts leaves no server behind.
inline void endWithParent()
{
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
}
