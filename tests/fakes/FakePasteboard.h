#pragma once

#include "platform/Pasteboard.h"

/// A pasteboard in memory, with shortcuts for what other programs copy.
class FakePasteboard : public Pasteboard
{
public:
    quint64 changeCount() const override { return m_snapshot.changeCount; }
    quint64 noticedCount() const override { return m_noticedCount; }

    PasteboardSnapshot snapshot() const override
    {
        ++snapshotCount;
        return m_snapshot;
    }

    QList<PasteboardSnapshot> takeSnapshotsSince(quint64 changeCount) override
    {
        ++snapshotCount;
        QList<PasteboardSnapshot> taken;
        for (const PasteboardSnapshot &snapshot : m_untaken) {
            if (snapshot.changeCount > changeCount)
                taken.append(snapshot);
        }
        m_untaken = {m_snapshot};
        return taken;
    }

    void write(const PasteboardContents &contents) override
    {
        written = contents;
        ++writeCount;
        if (onWritten)
            onWritten();
        PasteboardSnapshot snapshot;
        snapshot.isOwnWrite = true;
        copy(snapshot);
    }

    void keepAlive(const PasteboardSnapshot &snapshot) override
    {
        keptAlive.append(snapshot.changeCount);
    }
    void discard(const PasteboardSnapshot &snapshot) override
    {
        discarded.append(snapshot.changeCount);
    }

    /// A change is noticed that nobody has read yet; returns its number.
    quint64 notice() { return ++m_noticedCount; }

    /// Another program copies \a snapshot; its change count is set here, and its notice and what
    /// was in front unless it has one.
    void copy(PasteboardSnapshot snapshot)
    {
        if (snapshot.notice == 0)
            snapshot.notice = notice();
        if (!snapshot.frontmostApplication && !snapshot.isOwnWrite)
            snapshot.frontmostApplication = frontmost;
        snapshot.changeCount = m_snapshot.changeCount + 1;
        m_snapshot = std::move(snapshot);
        m_untaken.append(m_snapshot);
    }

    void copyText(const QString &text)
    {
        PasteboardSnapshot snapshot;
        snapshot.types = {PasteboardType::kString.toString()};
        snapshot.string = Utf8Text(text);
        copy(snapshot);
    }

    /// Puts the program \a identifier in front; without a name it is called like it.
    void setFrontmost(const QString &identifier, const QString &name = {})
    {
        frontmost = RunningApplication{identifier, name.isEmpty() ? identifier : name, 1, 1};
    }

    std::optional<RunningApplication> frontmost;
    PasteboardContents written;
    int writeCount = 0;
    std::function<void()> onWritten;
    QList<quint64> keptAlive; ///< Change counts.
    QList<quint64> discarded; ///< Change counts.
    mutable int snapshotCount = 0;

private:
    quint64 m_noticedCount = 0;
    PasteboardSnapshot m_snapshot;
    QList<PasteboardSnapshot> m_untaken;
};
