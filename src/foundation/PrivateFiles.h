#pragma once

#include <QByteArrayView>
#include <QString>

// What people copy is nobody else's business: the program's directories have the mode 0700 and its
// files 0600, whatever the umask says.

/// Creates the directory, and those above it that are missing, for the user alone. A directory that
/// exists is closed to others; if it was open, so are the files in it. False if there is no such
/// directory in the end.
[[nodiscard]] bool ensurePrivateDirectory(const QString &path);

/// Creates an empty file for the user alone. A file that exists is closed to others and keeps what
/// it holds; it is not opened. False if there is no such file in the end.
[[nodiscard]] bool ensurePrivateFile(const QString &path);

/// Creates the file with \a bytes for the user alone. When it returns, the file and its name are on
/// the disk itself, where a power cut does not reach them. What cannot be written to the end is
/// removed again.
/// \throws std::system_error, also if there is such a file already, which stays as it is.
void writePrivateFile(const QString &path, QByteArrayView bytes);

/// Takes the rights of others from a file, if there is one. Returns whether they had any.
bool closeToOthers(const QString &path);
