#pragma once

#include <QString>
#include <QStringView>

/// What of an HTML document decides how its text reads: text, elements, and of their styles only the
/// treatment of white space. Scripts, style sheets, comments, pictures and all other attributes
/// are gone; lists and tables are paragraphs.
///
/// The result is safe to render: it names nothing to be loaded, its elements nest no deeper than
/// kMaxHtmlDepth (the text of deeper ones stays), and rendering it takes about as long as rendering
/// \a budget characters of running text; what goes beyond is cut off.
QString htmlSkeleton(QStringView html, qsizetype budget);

/// Rendering takes time with the square of the depth.
inline constexpr qsizetype kMaxHtmlDepth = 64;
