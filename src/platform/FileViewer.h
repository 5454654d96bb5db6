#pragma once

#include <QList>
#include <QUrl>

/// The desktop's file manager. Main thread only; never waits for another program.
class FileViewer
{
public:
    virtual ~FileViewer() = default;

    /// Shows the files of \a urls where they lie, selected if the file manager can do that.
    virtual void activateFileViewerSelecting(const QList<QUrl> &urls) = 0;
};
