#pragma once

/// To be called once, before the application object is made and after leaveBrokenSessionBus(). If the
/// bus of assistive programs is there and does not answer within three seconds, that is printed, and
/// Qt is kept from it: it would wait for it, with our windows, for minutes.
///
/// What keeps Qt away is in the environment until restoreAccessibilityBusVariable() is called, after
/// the application object was made; the programs that we start shall not inherit it.
void leaveBrokenAccessibilityBus();

void restoreAccessibilityBusVariable();
