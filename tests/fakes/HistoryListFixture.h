#pragma once

#include "tests/fakes/FakeDesktopIcons.h"
#include "tests/fakes/FakeFileViewer.h"
#include "tests/fakes/FakeScheduler.h"
#include "tests/fakes/FakeWorkspace.h"
#include "tests/fakes/HistoryFixture.h"

#include "tags/TagManager.h"
#include "window/ApplicationNames.h"
#include "window/HistoryListCollaborators.h"
#include "window/RowPictures.h"

/// A base of tests that need what the list of the history works with.
class HistoryListFixture : protected HistoryFixture
{
protected:
    /// Begins with nothing at all.
    void setUpList()
    {
        tearDownList();
        setUpHistory();
        m_scheduler = std::make_unique<FakeScheduler>();
        m_workspace = std::make_unique<FakeWorkspace>();
        m_fileViewer = std::make_unique<FakeFileViewer>();
        m_names = std::make_unique<ApplicationNames>(*m_workspace);
        m_icons = std::make_shared<FakeDesktopIcons>();
        m_pictures = std::make_unique<RowPictures>(m_images, *m_codec, m_icons);
        m_tags = std::make_unique<TagManager>(*m_defaults);
        m_copied.clear();
        m_beepCount = 0;
        m_pasteboardText.clear();
    }

    void tearDownList()
    {
        m_tags.reset();
        m_pictures.reset();
        tearDownHistory();
    }

    HistoryListCollaborators listCollaborators()
    {
        return listCollaborators(*m_scheduler, *m_clock, *m_pictures);
    }

    HistoryListCollaborators listCollaborators(Scheduler &scheduler, const Clock &clock,
                                               RowPictures &pictures)
    {
        return {.workspace = *m_workspace,
                .itemManager = *m_manager,
                .tagManager = *m_tags,
                .fileViewer = *m_fileViewer,
                .applicationNames = *m_names,
                .pictures = pictures,
                .scheduler = scheduler,
                .clock = clock,
                .defaults = *m_defaults,
                .copyItem = [this](const ClipboardItem &item) { m_copied.append(item.id); },
                .beep = [this] { ++m_beepCount; },
                .pasteboardText = [this] { return m_pasteboardText; }};
    }

    /// Puts \a items into the history too.
    void fillHistory(const ClipboardItemList &items)
    {
        for (const ClipboardItemPointer &item : items)
            m_manager->addItem(*item);
    }

    void pass(std::chrono::milliseconds time)
    {
        for (; time.count() > 0; time -= std::chrono::milliseconds(1)) {
            m_clock->advance(std::chrono::milliseconds(1));
            m_scheduler->advance(std::chrono::milliseconds(1));
        }
    }

    std::unique_ptr<FakeScheduler> m_scheduler;
    std::unique_ptr<FakeWorkspace> m_workspace;
    std::unique_ptr<FakeFileViewer> m_fileViewer;
    std::unique_ptr<ApplicationNames> m_names;
    std::shared_ptr<FakeDesktopIcons> m_icons;
    std::unique_ptr<RowPictures> m_pictures;
    std::unique_ptr<TagManager> m_tags;
    QList<QUuid> m_copied;
    int m_beepCount = 0;
    QString m_pasteboardText;
};
