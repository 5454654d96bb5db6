#pragma once

#include <string>

/// Names the calling thread by the last part of a dotted \a label, for whoever looks at the process.
void nameCurrentThread(const std::string &label);
