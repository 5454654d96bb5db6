#pragma once

#include <QFont>
#include <QRectF>
#include <QString>

class QPainter;

/// Makes all interface fonts larger by the factor \a scale from now on. It is kept between 1 and 1.3,
/// since the boxes around texts do not grow. Views that have measured texts or kept fonts must do so
/// again.
void setInterfaceTextScale(qreal scale);
qreal interfaceTextScale();

/// The desktop's interface family in our own size and weight. Sizes are device-independent pixels,
/// before the scale of the texts.
///
/// Fonts once asked for are kept, so that their files stay loaded between two windows.
QFont interfaceFont(qreal pixelSize, QFont::Weight weight = QFont::Normal);

/// Draws \a text in the painter's font and pen on one line, which is centred in \a box by ascent
/// and descent and not by the ink, so that lines of different scripts do not hop. Longer text is
/// not cut. Only the horizontal part of \a alignment counts.
void drawTextLine(QPainter &painter, const QRectF &box, const QString &text,
                  Qt::Alignment alignment = Qt::AlignLeft);

/// The same for a text that is cut to fit into \a box.
void drawElided(QPainter &painter, const QRectF &box, const QString &text,
                Qt::Alignment alignment = Qt::AlignLeft,
                Qt::TextElideMode mode = Qt::ElideRight);
