#pragma once

/// Gives what was freed in small pieces back to the system, which the allocator would keep for later.
/// Takes some milliseconds.
void returnFreeMemory();
