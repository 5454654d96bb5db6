#include "platform/x11/X11KeepAlive.h"

#include "platform/linux/MimeTypes.h"

#include <QHash>

namespace {

PasteboardContents contentsOf(const X11SelectionReader::Copy &copy)
{
    const PasteboardSnapshot &snapshot = copy.snapshot;
    PasteboardContents contents;
    const QList<QUrl> urls = snapshot.fileUrls.value_or(QList<QUrl>());
    for (const QUrl &url : urls)
        contents.add(PasteboardType::kFileUrl, url.toEncoded());
    if (snapshot.string)
        contents.add(PasteboardType::kString, snapshot.string->utf8());
    if (snapshot.html)
        contents.add(PasteboardType::kHtml, *snapshot.html);
    if (snapshot.rtf)
        contents.add(PasteboardType::kRtf, *snapshot.rtf);
    if (!copy.picture.isEmpty()) {
        const QStringView type = MimeTypes::typeOf(copy.pictureTarget);
        const bool hasIdentifier = type != PasteboardType::kImage;
        contents.add(hasIdentifier ? type : copy.pictureTarget.toLower(), copy.picture);
    }
    return contents;
}

std::size_t fingerprintOf(const PasteboardContents &contents)
{
    std::size_t fingerprint = 0;
    for (const PasteboardContents::Entry &entry : contents.entries)
        fingerprint = qHashMulti(fingerprint, entry.type, entry.data.bytes());
    return fingerprint;
}

} // namespace

void X11KeepAlive::setCopy(quint64 notice, const X11SelectionReader::Copy &copy)
{
    m_copy = Kept{notice, copy, false, std::nullopt};
}

bool X11KeepAlive::hasCopy() const
{
    if (!m_copy)
        return false;
    const PasteboardSnapshot &snapshot = m_copy->copy.snapshot;
    return snapshot.string || snapshot.html || snapshot.rtf || !m_copy->copy.picture.isEmpty() ||
           !snapshot.fileUrls.value_or(QList<QUrl>()).isEmpty();
}

void X11KeepAlive::allow(quint64 notice, TimePoint now)
{
    if (!m_copy || m_copy->notice != notice)
        return;
    m_copy->isAllowed = true;
    takeOverIfDue(now);
}

void X11KeepAlive::discard(quint64 notice)
{
    if (m_copy && m_copy->notice == notice)
        m_copy.reset();
}

void X11KeepAlive::ownerEnded(X11Time ownedSince, TimePoint now)
{
    if (!m_copy)
        return;
    m_copy->endedOwnerSince = ownedSince;
    takeOverIfDue(now);
}

void X11KeepAlive::takeOverIfDue(TimePoint now)
{
    if (!m_copy->isAllowed || !m_copy->endedOwnerSince)
        return;
    const Kept kept = *std::exchange(m_copy, std::nullopt);
    const PasteboardContents contents = contentsOf(kept.copy);
    if (!contents.isEmpty() && m_limit.beginRound(fingerprintOf(contents), now))
        m_server.takeOver(contents, *kept.endedOwnerSince);
}
