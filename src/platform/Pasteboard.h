#pragma once

#include "foundation/Utf8Text.h"
#include "platform/Workspace.h"

#include <QByteArray>
#include <QList>
#include <QSize>
#include <QStringList>
#include <QUrl>

#include <functional>
#include <optional>

/// The identifiers under which content lies on the pasteboard.
namespace PasteboardType {
inline constexpr QStringView kString = u"public.utf8-plain-text";
inline constexpr QStringView kUrl = u"public.url";
inline constexpr QStringView kHtml = u"public.html";
inline constexpr QStringView kRtf = u"public.rtf";
inline constexpr QStringView kFileUrl = u"public.file-url";
inline constexpr QStringView kTiff = u"public.tiff";
inline constexpr QStringView kPng = u"public.png";
inline constexpr QStringView kJpeg = u"public.jpeg";
inline constexpr QStringView kImage = u"public.image";
inline constexpr QStringView kRemoteClipboard = u"com.apple.is-remote-clipboard";
} // namespace PasteboardType

/// A picture as the pasteboard offered it, decoded and written again by our own encoder.
struct PasteboardImage
{
    QByteArray tiff; ///< The same pixels give the same bytes, whatever format was offered.
    QSize size; ///< In pixels.
    /// sha256Hex() of the TIFF; empty if nobody has computed it.
    QByteArray digest = {};
};

/// What lay on the pasteboard at one change, read to the end.
struct PasteboardSnapshot
{
    quint64 changeCount = 0;
    quint64 notice = 0; ///< Pasteboard::noticedCount() when the change was noticed.
    /// The program in front when the change was noticed; absent if there was none, or the change is
    /// of our own.
    std::optional<RunningApplication> frontmostApplication;
    QStringList types; ///< Identifiers of PasteboardType, in the order of the offer.
    std::optional<Utf8Text> string; ///< Present if a text was offered, even an empty one.
    std::optional<QByteArray> html; ///< As offered, byte for byte.
    std::optional<QByteArray> rtf; ///< As offered, byte for byte.
    std::optional<QList<QUrl>> fileUrls; ///< The copied URLs if files were offered and readable.
    /// Only fetched where no string came; absent if it could not be read.
    std::optional<PasteboardImage> image;
    bool isOwnWrite = false; ///< This program wrote it.

    bool hasType(QStringView type) const { return types.contains(type); }

    /// What it takes in memory, about.
    qsizetype byteCount() const
    {
        constexpr qsizetype kBytesPerUrl = 512;
        return (string ? string->byteCount() : 0) + (html ? html->size() : 0)
            + (rtf ? rtf->size() : 0) + (image ? image->tiff.size() : 0)
            + (fileUrls ? fileUrls->size() * kBytesPerUrl : 0);
    }
};

/// What is to be put on the pasteboard, in the order in which it is offered.
struct PasteboardContents
{
    struct Entry
    {
        /// An identifier of PasteboardType, or the MIME type of a picture format that has none.
        QString type;
        /// For kString and kUrl UTF-8; for kFileUrl the encoded URL. What is not in memory is read
        /// whenever a program asks for it.
        LazyBytes data;
        /// The data are a picture of whatever format. The one of the type is made of it when a
        /// program asks, and refused if it turns out to be no picture.
        bool isToBeConverted = false;

        friend bool operator==(const Entry &, const Entry &) = default;
    };

    QList<Entry> entries;

    void add(QStringView type, LazyBytes data)
    {
        entries.append({type.toString(), std::move(data)});
    }
    /// Offers \a picture, of whatever format, as a TIFF.
    void addAsTiff(LazyBytes picture)
    {
        entries.append({PasteboardType::kTiff.toString(), std::move(picture), true});
    }
    bool isEmpty() const { return entries.isEmpty(); }
};

/// The general pasteboard: what the person copied last, in whatever program.
class Pasteboard
{
public:
    virtual ~Pasteboard() = default;

    /// Moves with every change, ours included, and only after its snapshot is complete. One atomic
    /// read; any thread.
    virtual quint64 changeCount() const = 0;

    /// Moves as soon as a change is noticed, before anything of it is read, so that a later reader
    /// can tell what was copied when. One atomic read; any thread.
    virtual quint64 noticedCount() const = 0;

    /// The snapshot that belongs to the latest change count. Never waits for another program.
    virtual PasteboardSnapshot snapshot() const = 0;

    /// The snapshots of all changes after \a changeCount, oldest first, so that none is missed when
    /// several came since the last look. Each is given out once, but for the latest, which
    /// snapshot() goes on to return, without its picture. Those nobody asks for are dropped when
    /// they become too many.
    virtual QList<PasteboardSnapshot> takeSnapshotsSince(quint64 changeCount) = 0;

    /// Replaces what is on the pasteboard and returns at once. Without entries it is left empty.
    virtual void write(const PasteboardContents &contents) = 0;

    /// Allows what \a snapshot tells of to outlive the program that owns it: when that program ends
    /// and nothing else was copied, the pasteboard offers the same content itself. That is no
    /// change. Without this call content goes with its program.
    virtual void keepAlive(const PasteboardSnapshot &snapshot) = 0;

    /// Forgets the content of \a snapshot: snapshot() goes on without it, and it does not outlive
    /// its program.
    virtual void discard(const PasteboardSnapshot &snapshot) = 0;

    /// Called on the main thread soon after the change count has moved; several changes may come
    /// together. There are changes that bring no call, so that a poll stays necessary.
    std::function<void()> onChanged;
};
