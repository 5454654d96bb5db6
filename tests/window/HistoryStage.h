#pragma once

#include "tests/fakes/FakeDesktopAppearance.h"
#include "tests/fakes/FakePointerMonitor.h"
#include "tests/fakes/HistoryListFixture.h"
#include "tests/window/SampleIcons.h"

#include "platform/linux/QtImageCodec.h"
#include "platform/linux/QtScheduler.h"
#include "window/HistoryWindowFactory.h"

#include <QElapsedTimer>

/// Runs as any clock does, from the hour by which the entries of samples are dated.
class StageClock : public Clock
{
public:
    StageClock() { m_running.start(); }

    Timestamp now() const override
    {
        return FakeClock().now() + std::chrono::microseconds(m_running.nsecsElapsed() / 1000);
    }

private:
    QElapsedTimer m_running;
};

/// What a history window needs in order to be shown for people to look at: real time, icons,
/// thumbnails and tags, on a desktop whose looks can be chosen.
class HistoryStage : private HistoryListFixture
{
public:
    HistoryStage()
    {
        setUpList();
        m_shells = std::make_unique<ShellKeeper>(*m_workspace);
        for (const auto &[name, picture] : sampleThumbnails().asKeyValueRange())
            picture.save(m_images + u'/' + name + QStringLiteral("_thumb.png"));
        m_icons->files = sampleFileIcons();
        m_icons->applications = sampleApplicationIcons();
        m_rowPictures = std::make_unique<RowPictures>(m_images, m_imageCodec, m_icons);
    }

    UserDefaults &defaults() { return *m_defaults; }

    void setTags(const QStringList &names)
    {
        for (const QString &name : m_tags->tagNames())
            m_tags->deleteTag(name);
        for (const QString &name : names)
            m_tags->createTag(name);
    }

    void setApplicationNames(const QHash<QString, QString> &names)
    {
        m_workspace->names = names;
        m_names = std::make_unique<ApplicationNames>(*m_workspace);
    }

    HistoryWindowCollaborators collaborators()
    {
        return {.workspace = *m_workspace,
                .pointerMonitor = m_pointer,
                .appearance = appearance,
                .defaults = *m_defaults,
                .shells = *m_shells,
                .list = listCollaborators(m_runningScheduler, *m_runningClock, *m_rowPictures)};
    }

    /// A window over \a items, whose ages count from now on. It goes before the next is made.
    std::unique_ptr<HistoryWindow> makeWindow(const ClipboardItemList &items)
    {
        m_runningClock = std::make_unique<StageClock>();
        auto made = makeHistoryWindow(collaborators(), items);
        return std::unique_ptr<HistoryWindow>(static_cast<HistoryWindow *>(made.release()));
    }

    /// Whether the rows of \a items have their pictures; asks for those that are missing.
    bool hasPictures(const ClipboardItemList &items)
    {
        const qreal scale = qApp->devicePixelRatio();
        return std::ranges::all_of(items, [&](const ClipboardItemPointer &item) {
            return (!hasContentPicture(*item) || !m_rowPictures->content(*item, scale).isNull())
                && (!hasSourceIcon(*item) || !m_rowPictures->source(*item, scale).isNull());
        });
    }

    FakeDesktopAppearance appearance;

private:
    bool hasContentPicture(const ClipboardItem &item) const
    {
        const RowPictureName name = contentPicture(item);
        if (name.kind == RowPictureName::Kind::FileIcon)
            return m_icons->fileIcon(name.text, 0).has_value();
        return !name.isEmpty() && QFile::exists(m_images + u'/' + name.text);
    }

    bool hasSourceIcon(const ClipboardItem &item) const
    {
        return m_icons->applicationIcon(sourcePicture(item).text, 0).has_value();
    }

    const QtImageCodec m_imageCodec;
    QtScheduler m_runningScheduler;
    std::unique_ptr<StageClock> m_runningClock = std::make_unique<StageClock>();
    std::unique_ptr<RowPictures> m_rowPictures;
    FakePointerMonitor m_pointer;
    std::unique_ptr<ShellKeeper> m_shells;
};
