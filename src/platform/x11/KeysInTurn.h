#pragma once

#include <QAbstractNativeEventFilter>

/// Sees to it that all that came before a key has had its effect when the input method is asked about
/// that key.
///
/// The toolkit asks it as soon as a key has been read, and hands on the news only when it has read all
/// there is. Keys that are read together with the focus, or with a key that moves the focus, would
/// pass the input method by. Main thread only, from the construction to the end.
class KeysInTurn : public QAbstractNativeEventFilter
{
public:
    KeysInTurn();

    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;
};
