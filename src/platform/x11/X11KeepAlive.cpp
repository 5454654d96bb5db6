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

std::size_t hashOf(const PasteboardContents &contents)
{
    std::size_t hash = 0;
    for (const PasteboardContents::Entry &entry : contents.entries)
        hash = qHashMulti(hash, entry.type, entry.data);
    return hash;
}

} // namespace

void X11KeepAlive::setCopy(quint64 notice, const X11SelectionReader::Copy &copy)
{
    m_copy = Copy{notice, contentsOf(copy), false, std::nullopt};
}

void X11KeepAlive::allow(quint64 notice)
{
    if (!m_copy || m_copy->notice != notice)
        return;
    m_copy->isAllowed = true;
    takeOverIfDue();
}

void X11KeepAlive::discard(quint64 notice)
{
    if (m_copy && m_copy->notice == notice)
        m_copy.reset();
}

void X11KeepAlive::ownerEnded(X11Time time)
{
    if (!m_copy)
        return;
    m_copy->ownerEndedAt = time;
    takeOverIfDue();
}

void X11KeepAlive::takeOverIfDue()
{
    if (!m_copy->isAllowed || !m_copy->ownerEndedAt)
        return;
    const Copy copy = *std::exchange(m_copy, std::nullopt);
    if (!copy.contents.isEmpty() &&
        m_limit.allowsRound(hashOf(copy.contents), std::chrono::steady_clock::now()))
        m_server.takeOver(copy.contents, *copy.ownerEndedAt);
}
