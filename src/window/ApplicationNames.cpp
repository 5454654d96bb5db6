#include "window/ApplicationNames.h"

#include "platform/Workspace.h"

namespace {

/// Words begin after anything that is neither letter nor digit, as well as at the start.
QString withCapitalWords(const QString &text)
{
    QString result;
    bool isInsideWord = false;
    for (const QChar character : text) {
        result += isInsideWord ? character.toLower() : character.toUpper();
        isInsideWord = character.isLetterOrNumber() || character == u'\'';
    }
    return result;
}

QString nameFromIdentifier(const QString &bundleID)
{
    QString last = bundleID.sliced(bundleID.lastIndexOf(u'.') + 1);
    return withCapitalWords(last.replace(u'-', u' '));
}

} // namespace

QString ApplicationNames::appDisplayName(const QString &bundleID)
{
    const auto known = m_names.constFind(bundleID);
    if (known != m_names.constEnd())
        return *known;
    const QString name = m_workspace.applicationName(bundleID).value_or(QString());
    return *m_names.insert(bundleID, name.isEmpty() ? nameFromIdentifier(bundleID) : name);
}
