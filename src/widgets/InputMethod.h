#pragma once

class QKeyEvent;
class QWidget;

/// The input method by which people write what their keys alone do not, as far as the toolkit hands it
/// no news by itself. Main thread only.
namespace InputMethod {

/// Makes the window of \a field known before anybody writes in it, as if it had the focus for a moment.
/// An input method needs a while for a window that is new to it, and does not get what is typed
/// meanwhile. Does nothing while a window of the program does have the focus. The window must exist,
/// and must not have been given the focus before.
void introduce(QWidget &field);

/// Returns whether it takes \a event, which came to another widget than to the one that has the focus
/// now, and will send that what comes of it.
bool takes(const QKeyEvent &event);

} // namespace InputMethod
