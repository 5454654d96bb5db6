#pragma once

#include <QStringList>

/// How content is called on Linux: the targets of X11 and the MIME types of Wayland, and the
/// identifiers of PasteboardType for which they stand.
namespace MimeTypes {

/// The mark that password managers put beside a copy; its content says whether it is a secret.
inline constexpr QStringView kPasswordManagerHint = u"x-kde-passwordManagerHint";
inline constexpr QStringView kUriList = u"text/uri-list";
inline constexpr QStringView kMozillaUrl = u"text/x-moz-url";
inline constexpr QStringView kGnomeCopiedFiles = u"x-special/gnome-copied-files";
/// The same under the name that MATE's file manager reads, and no other.
inline constexpr QStringView kMateCopiedFiles = u"x-special/mate-copied-files";

/// The targets under which content of \a type can be asked for, best first. Empty for an identifier
/// that has no counterpart here.
QStringList targetsFor(QStringView type);

/// The targets under which we offer content of \a type: fewer, the names that are right. The MIME
/// type of a picture format without an identifier stands for itself.
QStringList targetsToOffer(QStringView type);

/// The identifier for which \a target stands, PasteboardType::kImage for a picture format without
/// an identifier of its own. Empty if the target means nothing to us.
QStringView typeOf(QStringView target);

/// Whether two names mean one target: MIME types do not care for case, the older names of X11 do.
bool isSameTarget(QStringView left, QStringView right);

} // namespace MimeTypes
