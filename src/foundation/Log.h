#pragma once

#include <QString>

#include <functional>

/// Writes \a line and a line feed to standard output at once. Any thread.
void printLine(const QString &line);

/// Sends the lines to \a sink instead of standard output; an empty function brings the output back.
/// For tests. The sink is called on the thread that prints, one line at a time.
void setPrintSink(std::function<void(const QString &line)> sink);
