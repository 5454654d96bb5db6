#pragma once

#include "core/ClipboardItem.h"

/// What the list is narrowed to.
struct FilterCategory
{
    enum class Kind { All, Favorites, Content, Tag };

    Kind kind = Kind::All;
    ClipboardContentType contentType = ClipboardContentType::Text; ///< Only for Kind::Content.
    QString tagName; ///< Only for Kind::Tag.

    static FilterCategory all() { return {}; }
    static FilterCategory favorites() { return {Kind::Favorites, {}, {}}; }
    static FilterCategory content(ClipboardContentType type) { return {Kind::Content, type, {}}; }
    /// Entries with the tag \a name, letter by letter.
    static FilterCategory tag(const QString &name) { return {Kind::Tag, {}, name}; }

    friend bool operator==(const FilterCategory &, const FilterCategory &) = default;
};
