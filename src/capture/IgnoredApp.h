#pragma once

#include <QString>

#include <optional>

/// A program whose copies are not recorded.
struct IgnoredApp
{
    QString name; ///< For people.
    QString bundleIdentifier; ///< As the desktop reports it, in its case.
    std::optional<QString> path; ///< Where the program lies, if that is known.

    friend bool operator==(const IgnoredApp &, const IgnoredApp &) = default;
};
