#pragma once

#include "core/FileReferences.h"
#include "foundation/RegularFile.h"

#include <QHash>

#include <algorithm>
#include <functional>

/// Bookmarks that lead where the test says.
class FakeFileBookmarks : public FileBookmarks
{
public:
    QByteArray create(const QUrl &url) const override
    {
        if (!creationError.empty())
            throw BookmarkError(creationError);
        return "bookmark of " + url.toEncoded();
    }

    Resolved resolve(const QByteArray &bookmark) const override
    {
        if (!places.contains(bookmark))
            throw BookmarkError("nothing is known of it");
        return places.value(bookmark);
    }

    std::string creationError; ///< Creation fails with it unless it is empty.
    QHash<QByteArray, Resolved> places;
};

/// Access that the test grants, and files that it says are there.
class FakeFileAccess : public FileAccess
{
public:
    std::unique_ptr<Scope> start(const QUrl &url) const override
    {
        started.append(url);
        return isGranted ? std::make_unique<CountedScope>(*this) : nullptr;
    }

    std::optional<bool> exist(const QList<QUrl> &urls) const override
    {
        if (!answers)
            return std::nullopt;
        return std::ranges::all_of(urls, [this](const QUrl &url) { return files.contains(url); });
    }

    std::optional<LazyBytes> open(const QString &path) const override
    {
        const auto file = RegularFile::open(path);
        return file ? std::optional(LazyBytes::elsewhere(file->size(), file)) : std::nullopt;
    }

    bool isGranted = true;
    bool answers = true;
    QList<QUrl> files;
    mutable QList<QUrl> started;
    mutable int openCount = 0; ///< Accesses that have not ended.
    std::function<void()> onEnded; ///< Called at the end of each.

private:
    class CountedScope : public Scope
    {
    public:
        explicit CountedScope(const FakeFileAccess &access)
            : m_access(access)
        {
            ++m_access.openCount;
        }
        ~CountedScope() override
        {
            --m_access.openCount;
            if (m_access.onEnded)
                m_access.onEnded();
        }

    private:
        const FakeFileAccess &m_access;
    };
};

/// Both, and what the program makes of them.
struct FakeFiles
{
    explicit FakeFiles(const UserDefaults &defaults)
        : references(bookmarks, access, defaults)
    {
    }

    FakeFileBookmarks bookmarks;
    FakeFileAccess access;
    FileReferences references;
};
