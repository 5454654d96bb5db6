#include "platform/linux/MimeTypes.h"

#include "platform/Pasteboard.h"

#include <iterator>

using namespace Qt::StringLiterals;

namespace {

enum class Use
{
    ReadAndOffer,
    ReadOnly
};

struct Mapping
{
    QStringView type;
    QStringView target;
    Use use = Use::ReadAndOffer;
};

// Within one identifier the best target comes first.
constexpr Mapping kMappings[] = {
    {PasteboardType::kString, u"UTF8_STRING"},
    {PasteboardType::kString, u"text/plain;charset=utf-8"},
    {PasteboardType::kString, u"text/plain"},
    {PasteboardType::kString, u"STRING"},
    {PasteboardType::kUrl, MimeTypes::kMozillaUrl},
    {PasteboardType::kHtml, u"text/html"},
    {PasteboardType::kRtf, u"text/rtf"},
    {PasteboardType::kRtf, u"application/rtf"},
    {PasteboardType::kRtf, u"text/richtext", Use::ReadOnly}, // Means another format.
    {PasteboardType::kFileUrl, MimeTypes::kUriList},
    {PasteboardType::kFileUrl, MimeTypes::kGnomeCopiedFiles},
    {PasteboardType::kFileUrl, MimeTypes::kMateCopiedFiles},
    {PasteboardType::kPng, u"image/png"},
    {PasteboardType::kTiff, u"image/tiff"},
    {PasteboardType::kJpeg, u"image/jpeg"},
    // Programs that carry a clipboard from one machine to another set this name as it stands.
    {PasteboardType::kRemoteClipboard, PasteboardType::kRemoteClipboard},
};

} // namespace

QStringList MimeTypes::targetsFor(QStringView type)
{
    QStringList targets;
    for (const Mapping &mapping : kMappings) {
        if (mapping.type == type)
            targets.append(mapping.target.toString());
    }
    return targets;
}

QStringList MimeTypes::targetsToOffer(QStringView type)
{
    QStringList targets;
    for (const Mapping &mapping : kMappings) {
        if (mapping.type == type && mapping.use == Use::ReadAndOffer)
            targets.append(mapping.target.toString());
    }
    if (targets.isEmpty() && type.startsWith(u"image/"))
        targets.append(type.toString());
    return targets;
}

QStringView MimeTypes::typeOf(QStringView target)
{
    const auto known =
        std::find_if(std::begin(kMappings), std::end(kMappings), [target](const Mapping &mapping) {
            return isSameTarget(target, mapping.target);
        });
    if (known != std::end(kMappings))
        return known->type;
    if (target.startsWith(u"image/", Qt::CaseInsensitive))
        return PasteboardType::kImage;
    return {};
}

bool MimeTypes::isSameTarget(QStringView left, QStringView right)
{
    const bool isMimeType = right.contains(u'/');
    return left.compare(right, isMimeType ? Qt::CaseInsensitive : Qt::CaseSensitive) == 0;
}
