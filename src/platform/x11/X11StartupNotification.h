#pragma once

#include <QString>

class X11Requests;

// A launcher that starts a program gives it a token, or startup ID, and shows by the pointer that
// the person has to wait, until the program tells that it is there.

/// The server's time of the person's action, which stands at the end of the token; 0 if none does.
quint32 startupTimeOf(QStringView token);

/// Tells whoever shows it that the start with this \a token is over.
void completeStartup(X11Requests &requests, const QString &token);
