#include "platform/linux/DataFolders.h"

#include <QDir>

using namespace Qt::StringLiterals;

QStringList dataFolders()
{
    QString home = qEnvironmentVariable("XDG_DATA_HOME");
    if (home.isEmpty())
        home = QDir::homePath() + u"/.local/share"_s;
    QString shared = qEnvironmentVariable("XDG_DATA_DIRS");
    if (shared.isEmpty())
        shared = u"/usr/local/share:/usr/share"_s;

    QStringList folders{home};
    folders += shared.split(u':', Qt::SkipEmptyParts);
    folders.removeDuplicates();
    return folders;
}
