#pragma once

#include "capture/ClipboardMonitor.h"
#include "capture/PrivacySettingsManager.h"
#include "tests/fakes/FakePasteboard.h"
#include "tests/fakes/FakeScheduler.h"
#include "tests/fakes/FakeWorkspace.h"
#include "tests/fakes/HistoryFixture.h"

/// A base of tests that capture from a pasteboard into a history.
class CaptureFixture : protected HistoryFixture
{
protected:
    void setUpCapture()
    {
        setUpHistory();
        m_privacy = std::make_unique<PrivacySettingsManager>(*m_defaults);
        m_pasteboard = std::make_unique<FakePasteboard>();
        m_workspace = std::make_unique<FakeWorkspace>();
        m_scheduler = std::make_unique<FakeScheduler>();
        watchPasteboard(m_files->references);
    }

    void watchPasteboard(const FileReferences &fileReferences)
    {
        m_monitor = std::make_unique<ClipboardMonitor>(*m_pasteboard, *m_scheduler, *m_clock,
                                                       *m_manager, *m_privacy, fileReferences);
    }

    void tearDownCapture()
    {
        m_monitor.reset();
        m_privacy.reset();
        tearDownHistory();
    }

    std::unique_ptr<PrivacySettingsManager> m_privacy;
    std::unique_ptr<FakePasteboard> m_pasteboard;
    std::unique_ptr<FakeWorkspace> m_workspace;
    std::unique_ptr<FakeScheduler> m_scheduler;
    std::unique_ptr<ClipboardMonitor> m_monitor;
};
