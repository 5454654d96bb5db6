#pragma once

#include <QAbstractNativeEventFilter>

/// Sees to it that a window knows of its focus before it gets its first key.
///
/// The toolkit hands each key to the input method as soon as it has read it, and tells of the focus
/// only when it has read all there is. Keys that are read together with the focus would pass the input
/// method by. Main thread only, from the construction to the end.
class FocusBeforeKeys : public QAbstractNativeEventFilter
{
public:
    FocusBeforeKeys();

    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;
};
