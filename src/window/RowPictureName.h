#pragma once

#include <QString>

struct ClipboardItem;

/// Tells the small pictures in the rows of the list apart. Rows may share one.
struct RowPictureName
{
    enum class Kind { Thumbnail, FileIcon, SourceIcon };

    Kind kind = Kind::Thumbnail;
    QString text; ///< Of a file, of a program, of an entry. Empty for no picture.

    bool isEmpty() const { return text.isEmpty(); }

    friend bool operator==(const RowPictureName &, const RowPictureName &) = default;
    friend size_t qHash(const RowPictureName &name, size_t seed = 0)
    {
        return qHashMulti(seed, int(name.kind), name.text);
    }
};

/// What stands for the kind of \a item: the thumbnail of a picture, the icon of a file.
RowPictureName contentPicture(const ClipboardItem &item);

/// The icon of the program that \a item came from.
RowPictureName sourcePicture(const ClipboardItem &item);
