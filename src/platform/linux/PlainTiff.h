#pragma once

#include <QByteArray>
#include <QImage>

/// The TIFF that copied pictures become: a fixed header, then one strip of uncompressed pixels of 8
/// bits a colour, with an alpha channel or without one.
///
/// The same pixels give the same bytes, whatever library reads and writes pictures otherwise: the
/// digest by which a picture is known again is stored. And such a file is read without decoding.
namespace PlainTiff {

/// \a image has the format RGB888 or RGBA8888.
QByteArray fromImage(const QImage &image);

/// The pixels of \a file, where they lie: the image shares its memory. A null image if the file is
/// not exactly one of ours.
QImage imageIn(const QByteArray &file);

} // namespace PlainTiff
