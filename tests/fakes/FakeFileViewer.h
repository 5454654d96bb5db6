#pragma once

#include "platform/FileViewer.h"

/// A file manager that notes what it was asked to show.
class FakeFileViewer : public FileViewer
{
public:
    void activateFileViewerSelecting(const QList<QUrl> &urls) override { shown.append(urls); }

    QList<QList<QUrl>> shown;
};
