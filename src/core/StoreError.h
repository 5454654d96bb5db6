#pragma once

#include <stdexcept>

/// A store could not read or write; the text tells what and why.
class StoreError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};
