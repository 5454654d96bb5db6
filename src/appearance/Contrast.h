#pragma once

#include <QColor>

/// How well one of two opaque colours can be read on the other, from 1 to 21 (WCAG 2).
double contrastRatio(const QColor &one, const QColor &other);

/// What is seen where \a top lies over the opaque \a below.
QColor composed(const QColor &top, const QColor &below);
