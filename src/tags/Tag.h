#pragma once

#include <QString>
#include <QUuid>

#include <array>
#include <optional>

/// The colours that tags have, in the order of the palette.
enum class TagColor {
    Red, Orange, Yellow, Green, Mint, Teal, Cyan, Blue, Indigo, Purple, Pink, Brown, Gray, Lime, Sky
};

inline constexpr int kTagColorCount = 15;

/// The stored name of \a color, as "red".
QString rawValue(TagColor color);
std::optional<TagColor> tagColorFromRaw(QStringView raw);

/// What is shown of the name of a tag, which may be of any length where it was not made by us.
QString shownTagName(const QString &name);

/// So many tags a menu shows at most: it takes time and room for each.
inline constexpr qsizetype kMaxTagsInMenu = 100;

/// A label that the person made. Entries refer to it by its name.
struct Tag
{
    QUuid id; ///< Nothing is looked up by it.
    QString name;
    TagColor color = TagColor::Red;

    friend bool operator==(const Tag &, const Tag &) = default;
};
