#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

/// Finds the files of icons by their names, in a theme, those that it stands on, and at last in the
/// one that programs bring their own icons for. One thread at a time.
///
/// The descriptions of themes are read once, with the first question.
class IconTheme
{
public:
    /// Of the files of icons, the best first.
    static constexpr QLatin1StringView kSuffixes[]{
        QLatin1StringView(".png"), QLatin1StringView(".svg"), QLatin1StringView(".xpm")};

    /// \a folders hold themes, and icons without a theme too; the first wins.
    IconTheme(QStringList folders, QString themeName);

    /// Where the session's icons are.
    static QStringList sessionFolders();

    /// The file of the first of \a names that there is an icon for, of the size next to \a side
    /// pixels. Empty if there is none.
    QString find(const QStringList &names, int side) const;

private:
    struct Directory
    {
        QStringList paths; ///< As many as exist, the first wins.
        int minSide = 0; ///< Icons in it can be drawn with so many pixels.
        int maxSide = 0;

        int distance(int side) const;
    };
    using Theme = QList<Directory>;

    const QList<Theme> &themes() const;
    void load(const QString &name) const;
    QByteArray description(const QString &name) const;
    QStringList pathsOf(const QString &directory) const;
    QString findIn(const Theme &theme, const QString &name, int side) const;
    QString findWithoutTheme(const QString &name) const;

    QStringList m_folders;
    QString m_themeName;
    mutable QStringList m_loadedNames;
    mutable QList<Theme> m_themes; ///< In the order in which they are searched.
};
