#pragma once

#include <QFont>
#include <QRectF>
#include <QString>

class QPainter;

/// By how much all interface fonts are larger from now on; what is beyond 1 and 1.3 is not followed,
/// since the boxes stay. Views that measure or keep fonts do so again afterwards.
void setInterfaceTextScale(qreal scale);

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
