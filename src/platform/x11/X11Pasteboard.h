#pragma once

#include "platform/Pasteboard.h"

#include <memory>

class ImageCodec;

/// The CLIPBOARD selection of the display that the environment names.
///
/// A thread of its own reads and serves selections, so that no other program can hold us up. Made
/// and ended on the main thread.
class X11Pasteboard : public Pasteboard
{
public:
    /// The codec must outlive it. What lies on the clipboard now is no change.
    /// \throws PlatformError if the display cannot be used.
    explicit X11Pasteboard(const ImageCodec &codec);
    ~X11Pasteboard() override;

    quint64 changeCount() const override;
    quint64 noticedCount() const override;
    PasteboardSnapshot snapshot() const override;
    QList<PasteboardSnapshot> takeSnapshotsSince(quint64 changeCount) override;
    void write(const PasteboardContents &contents) override;
    void keepAlive(const PasteboardSnapshot &snapshot) override;
    void discard(const PasteboardSnapshot &snapshot) override;

    /// Offers what was written last as the PRIMARY selection too, for programs that paste nothing
    /// else. Returns when our thread has done so, which takes as long as a few answers of the X
    /// server, and in any case soon. False if the clipboard is not ours any more.
    bool alsoOwnPrimary();

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};
