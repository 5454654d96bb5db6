#pragma once

#include "core/StoreError.h"
#include "foundation/Utf8Text.h"

/// The whole of a part that is about to be stored.
/// \throws StoreError if it is not in memory and cannot be read back: what is left of an entry must
/// not take the place of all of it.
template <typename Part>
QByteArray readBack(const Part &part)
{
    auto bytes = part.read();
    if (!bytes)
        throw StoreError("a part of the entry cannot be read back");
    return *std::move(bytes);
}
