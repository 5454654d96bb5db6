#pragma once

#include "platform/FileViewer.h"

#include <QObject>

class Scheduler;
class Workspace;

/// The file manager of the desktop by the session bus (org.freedesktop.FileManager1). Where there is
/// none, or none that answers, the program that opens folders (xdg-open) shows where the files lie.
class FileManagerViewer : public QObject, public FileViewer
{
    Q_OBJECT

public:
    /// Both must outlive the viewer.
    FileManagerViewer(const Workspace &workspace, Scheduler &scheduler);

    void activateFileViewerSelecting(const QList<QUrl> &urls) override;

private:
    void openFolders(const QList<QUrl> &urls) const;
    void openFolder(const QUrl &folder) const;

    const Workspace &m_workspace;
    Scheduler &m_scheduler;
};
