#pragma once

#include <QStringList>

/// Where programs look for what belongs to them and to the desktop, the person's own folder first
/// (XDG Base Directory). Not all of them need exist.
QStringList dataFolders();
