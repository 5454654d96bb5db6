#pragma once

#include "tests/fakes/FakeDesktopAppearance.h"
#include "tests/fakes/FakePointerMonitor.h"
#include "tests/fakes/HistoryListFixture.h"
#include "tests/window/SampleIcons.h"

#include "platform/linux/QtImageCodec.h"
#include "window/HistoryWindowFactory.h"

/// What a history window needs in order to be shown for people to look at: icons, thumbnails and
/// tags, on a desktop whose looks can be chosen. Its time passes by pass() only.
class HistoryStage : protected HistoryListFixture
{
public:
    using HistoryListFixture::pass;

    HistoryStage()
    {
        setUpList();
        m_workspace->isWindowWithdrawn = false; // Nobody asks whether it is, so each is a new one.
        m_shells = std::make_unique<ShellKeeper>(*m_workspace);
        for (const auto &[name, picture] : sampleThumbnails().asKeyValueRange())
            picture.save(m_images + u'/' + name + QStringLiteral("_thumb.png"));
        m_icons->files = sampleFileIcons();
        m_icons->applications = sampleApplicationIcons();
        m_rowPictures = std::make_unique<RowPictures>(m_images, m_imageCodec, m_icons);
    }

    virtual ~HistoryStage() = default;

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
                .list = listCollaborators(scheduler(), clock(), *m_rowPictures)};
    }

    /// A window over \a items, whose ages count from now on. It goes before the next is made.
    std::unique_ptr<HistoryWindow> makeWindow(const ClipboardItemList &items)
    {
        resetClock();
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

protected:
    virtual Scheduler &scheduler() { return *m_scheduler; }
    virtual const Clock &clock() const { return *m_clock; }

    /// To the hour by which the entries of samples are dated.
    virtual void resetClock() { m_clock->set(FakeClock().now()); }

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
    std::unique_ptr<RowPictures> m_rowPictures;
    FakePointerMonitor m_pointer;
    std::unique_ptr<ShellKeeper> m_shells;
};
