#pragma once

#include "appearance/SystemColors.h"
#include "widgets/FocusVisibility.h"

#include <QAbstractButton>

/// What all our buttons share: they draw themselves, answer to Return as to the space bar, and know
/// whether the focus came by the keyboard and is to be seen.
///
/// \a colors belong to the window, which repaints itself when they change.
class DrawnControl : public QAbstractButton
{
    Q_OBJECT

public:
    DrawnControl(const SystemColors &colors, QWidget *parent);

    bool isFocusVisible() const { return m_focusVisibility.isVisible(); }

    /// Of the corners, and of the focus ring around them.
    virtual qreal radius() const = 0;

signals:
    void focusVisibleChanged(bool isVisible);

protected:
    const SystemColors &colors() const { return m_colors; }

    /// Draws the control over its whole rectangle, as if it were enabled.
    virtual void draw(QPainter &painter) const = 0;

    /// The ground of something that can be pressed: \a color moved towards the label colour.
    QColor pressable(const QColor &color) const;

    /// Draws the rounded ground with a line just inside its edge.
    void drawGround(QPainter &painter, const QColor &ground, const QColor &line) const;

    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void tellFocusVisibility(bool wasVisible);

    const SystemColors &m_colors;
    FocusVisibility m_focusVisibility;
};
