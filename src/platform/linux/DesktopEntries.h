#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

/// An installed program, as its desktop entry describes it.
struct DesktopEntry
{
    QString id;          ///< The desktop-file id without ".desktop".
    QString name;        ///< In the language of the session.
    QString windowClass; ///< StartupWMClass; empty if the entry has none.
    QStringList categories;
    QString icon; ///< A name, or a path; empty if the entry has none.

    friend bool operator==(const DesktopEntry &, const DesktopEntry &) = default;
};

/// The desktop entries of the programs that are installed.
///
/// Nothing is read before the first question, and then one file where one file will do. All of
/// them are read once, when a window cannot be matched otherwise, and again after a folder has
/// changed.
class DesktopEntries
{
public:
    /// The folders and the language of the session.
    DesktopEntries();
    /// \a folders hold "*.desktop" files, the first wins; \a locale is like "de_AT.UTF-8@euro".
    DesktopEntries(QStringList folders, const QString &locale);

    std::optional<DesktopEntry> findById(const QString &id) const;

    /// The program that a window belongs to: by its GTK application id, by an entry that names one
    /// of the two parts of its class, or by an entry that is called like one of them, in full or in
    /// the last part of a dotted id. The parts are compared without regard to case; any of the
    /// three may be empty.
    std::optional<DesktopEntry> findByWindow(const QString &gtkApplicationId,
                                             const QString &instanceName,
                                             const QString &className) const;

private:
    struct File
    {
        QString id;
        QString path;
    };
    struct Index
    {
        QHash<QString, File> filesById;           ///< By the id in lower case.
        QHash<QString, QString> idsByWindowClass; ///< Both in lower case.
        QHash<QString, QString> idsByLastName;    ///< "editor" of "org.some.editor"; lower case.
        qint64 foldersChangedAt = -1;
    };

    std::optional<DesktopEntry> findUnindexed(const QString &id) const;
    std::optional<DesktopEntry> findIndexed(const QString &idLowerCase) const;
    std::optional<DesktopEntry> readEntry(const QString &id, const QString &path) const;
    std::optional<DesktopEntry> findByClass(const QString &instanceName,
                                            const QString &className) const;
    const Index &index() const;
    Index buildIndex() const;
    void addFolder(const QString &folder, Index &index) const;
    qint64 foldersChangedAt() const;

    QStringList m_folders;
    QList<QByteArray> m_nameKeys; ///< "Name[de_AT]", "Name[de]", "Name": the best first.
    mutable QHash<QString, DesktopEntry> m_entries; ///< Those read so far, by id.
    mutable std::optional<Index> m_index;
};
