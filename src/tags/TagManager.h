#pragma once

#include "tags/Tag.h"

#include <QList>
#include <QObject>
#include <QSet>
#include <QStringList>

#include <optional>

class UserDefaults;

/// The person's tags, in their order: names them, colours them and keeps them in the user defaults.
/// Knows nothing of entries. Main thread only.
///
/// A colour follows from the name, so that a tag that is made again looks as before. No two tags
/// have the same one as long as there are enough.
class TagManager : public QObject
{
    Q_OBJECT

public:
    static constexpr qsizetype absoluteMaxTagCount = 15;
    static constexpr qsizetype maxTagLength = 20; ///< In characters as a reader counts them.

    /// Loads the tags. \a defaults must outlive the manager.
    explicit TagManager(UserDefaults &defaults);

    const QList<Tag> &tags() const { return m_tags; }
    QStringList tagNames() const;
    qsizetype maxTagCount() const { return absoluteMaxTagCount; }

    /// \a name as a tag is called by it: without white space at its ends, and cut to maxTagLength.
    /// Empty if no tag can be called so.
    static QString normalizedName(const QString &name);

    /// False if the name is empty or taken, letter by letter, or if there are too many tags.
    bool createTag(const QString &name, std::optional<TagColor> color = {});

    /// False if there is no tag \a oldName, or if another has the new name, whatever its case. The
    /// tag gets the colour of its new name.
    bool renameTag(const QString &oldName, const QString &newName);

    /// Nothing goes if there is no tag of exactly this name; that is announced like a change.
    void deleteTag(const QString &name);

    // False if there is no such tag, or if it stands there already.
    bool moveTagToFront(const QString &name);
    bool moveTagUp(const QString &name);
    bool moveTagDown(const QString &name);

    /// Absent if there is no tag of exactly this name.
    std::optional<TagColor> color(const QString &name) const;

signals:
    /// Comes from the event loop after every change; for every change but a deletion at once as
    /// well.
    void tagsDidChange();

private:
    TagColor pickColor(const QString &name, const QSet<TagColor> &used) const;
    QSet<TagColor> usedColors() const;
    std::optional<qsizetype> indexOf(const QString &name) const;
    bool moveTag(std::optional<qsizetype> index, qsizetype place);
    void load();
    std::optional<QList<Tag>> storedTags() const;
    void recolor();
    void save();
    void saveAndAnnounce();

    UserDefaults &m_defaults;
    QList<Tag> m_tags;
};
