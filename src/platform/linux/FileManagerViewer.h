#pragma once

#include "platform/FileViewer.h"

#include <QObject>

/// The file manager of the desktop by the session bus (org.freedesktop.FileManager1); where there is
/// none, the program that opens folders.
class FileManagerViewer : public QObject, public FileViewer
{
    Q_OBJECT

public:
    void activateFileViewerSelecting(const QList<QUrl> &urls) override;
};
