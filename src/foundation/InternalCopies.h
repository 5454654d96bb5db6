#pragma once

#include <QObject>

/// Where any room tells that it is going to write to the pasteboard without pasting, so that the
/// copy is not recorded as a new one. One for the whole program. Main thread only.
class InternalCopies : public QObject
{
    Q_OBJECT

signals:
    /// To be emitted just before the pasteboard is touched.
    void tessarineInternalCopyWillWrite();
};
