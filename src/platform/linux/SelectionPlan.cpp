#include "platform/linux/SelectionPlan.h"

#include "platform/Pasteboard.h"
#include "platform/linux/MimeTypes.h"

using namespace Qt::StringLiterals;

namespace {

/// The targets of \a offered that stand for \a type, in our order of preference and as the owner
/// spells them.
QStringList preferred(QStringView type, const QStringList &offered)
{
    QStringList found;
    const QStringList known = MimeTypes::targetsFor(type);
    for (const QString &target : known) {
        const auto offer =
            std::find_if(offered.begin(), offered.end(), [&target](const QString &name) {
                return MimeTypes::isSameTarget(name, target);
            });
        if (offer != offered.end())
            found.append(*offer);
    }
    return found;
}

/// PNG first, because everybody writes it without loss; formats we know less well come last.
QStringList pictures(const QStringList &offered)
{
    QStringList found = preferred(PasteboardType::kPng, offered);
    found += preferred(PasteboardType::kTiff, offered);
    found += preferred(PasteboardType::kJpeg, offered);
    for (const QString &target : offered) {
        if (MimeTypes::isSameTarget(target, u"image/bmp"))
            found.append(target);
    }
    for (const QString &target : offered) {
        if (MimeTypes::typeOf(target) == PasteboardType::kImage && !found.contains(target))
            found.append(target);
    }
    return found;
}

} // namespace

SelectionPlan SelectionPlan::fromTargets(const QStringList &targets)
{
    SelectionPlan plan;
    for (const QString &target : targets) {
        const QStringView type = MimeTypes::typeOf(target);
        if (!type.isEmpty() && !plan.types.contains(type))
            plan.types.append(type.toString());
    }
    plan.isMarkedByPasswordManager = targets.contains(MimeTypes::kPasswordManagerHint);
    plan.textTargets = preferred(PasteboardType::kString, targets);
    plan.htmlTargets = preferred(PasteboardType::kHtml, targets);
    plan.rtfTargets = preferred(PasteboardType::kRtf, targets);
    plan.fileTargets = preferred(PasteboardType::kFileUrl, targets);
    plan.pictureTargets = pictures(targets);
    return plan;
}
