#pragma once

#include <QString>

class X11Requests;

// A launcher that starts a program gives it a token, or startup ID, and shows by the pointer that
// the person has to wait, until the program tells that it is there.

/// The server's time of the person's action, which stands at the end of the token; 0 if none does.
quint32 startupTimeOf(QStringView token);

/// A token for a program that the person asked for at \a time, not zero. No two with different
/// \a number are the same.
QString newStartupToken(quint32 number, quint32 time);

/// Tells whoever shows it that the start with this \a token is over.
void completeStartup(X11Requests &requests, const QString &token);
