#pragma once

#include <QtGlobal>

/// What the two kinds of history window differ in.
struct HistoryWindowStyle
{
    qreal cornerRadius;
    qreal selectionRadius; ///< Of the ground of the selected row.
    /// The desktop blends windows: corners are smooth, and the window comes and goes as a whole.
    /// Otherwise corners are cut out of the window's shape, and only what stands on it fades.
    bool isTranslucent;

    friend bool operator==(const HistoryWindowStyle &, const HistoryWindowStyle &) = default;
};
