#pragma once

#include "appearance/SystemColors.h"

#include <QLabel>

/// A line of text in one of the window's colours. What does not fit ends in an ellipsis.
class SettingsLabel : public QLabel
{
    Q_OBJECT

public:
    using Color = QColor SystemColors::*;

    struct TextStyle
    {
        qreal size = 0; ///< In pixels, before the scale of the texts.
        QFont::Weight weight = QFont::Normal;
    };

    /// \a colors belong to the window, which repaints itself when they change.
    SettingsLabel(const SystemColors &colors, const TextStyle &style, Color color, QWidget *parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return {0, sizeHint().height()}; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QFont textFont() const;

    const SystemColors &m_colors;
    TextStyle m_style;
    Color m_color;
};
