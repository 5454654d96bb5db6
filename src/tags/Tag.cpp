#include "tags/Tag.h"

#include "foundation/TextTools.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kShownUnits = 200;

constexpr std::array<QStringView, kTagColorCount> kColorNames{
    u"red",    u"orange", u"yellow", u"green", u"mint",  u"teal", u"cyan", u"blue",
    u"indigo", u"purple", u"pink",   u"brown", u"gray",  u"lime", u"sky"};

} // namespace

QString shownTagName(const QString &name)
{
    return shortened(name, kShownUnits);
}

QString rawValue(TagColor color)
{
    return kColorNames.at(size_t(color)).toString();
}

std::optional<TagColor> tagColorFromRaw(QStringView raw)
{
    const auto found = std::ranges::find(kColorNames, raw);
    if (found == kColorNames.end())
        return std::nullopt;
    return TagColor(found - kColorNames.begin());
}
