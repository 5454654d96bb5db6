#pragma once

#include "core/ClipboardItem.h"

#include <nlohmann/json_fwd.hpp>

/// The entry as a JSON object: keys in the order of the fields, absent values left out, bytes as
/// Base64, dates in UTC cut to whole seconds. A picture that has no file yet is left out.
/// \throws StoreError if a date lies outside the years 0 to 9999.
nlohmann::ordered_json toJson(const ClipboardItem &item);

/// The entry that \a object describes. Only the id, the time and the type have to be there; a hash
/// that is missing or empty is computed.
/// \throws StoreError if one of these is missing, or if a value has the wrong type or form.
ClipboardItem clipboardItemFromJson(const nlohmann::ordered_json &object);
