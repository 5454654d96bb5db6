#pragma once

#include <QHash>
#include <QString>

class Workspace;

/// The names of programs for people, by their identifiers. Each is looked up once and then kept, so
/// that a list of thousands does not ask the desktop at every key. Main thread.
class ApplicationNames
{
public:
    /// \a workspace must outlive the object.
    explicit ApplicationNames(const Workspace &workspace) : m_workspace(workspace) {}

    /// Falls back on the last part of the identifier: "org.example.my-tool" is "My Tool".
    QString appDisplayName(const QString &bundleID);

private:
    const Workspace &m_workspace;
    QHash<QString, QString> m_names;
};
