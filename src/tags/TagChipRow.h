#pragma once

#include "appearance/SystemColors.h"

#include <QStringList>
#include <QWidget>

#include <functional>

class TagHoverContainer;

/// All tags as chips, in lines, for the menu of an entry. Turning one on or off leaves the menu open.
///
/// The menu may give it the focus. Then the arrows go from chip to chip, and what leads out of the
/// row is left to the menu.
class TagChipRow : public QWidget
{
    Q_OBJECT

public:
    /// \a selected are the tags that the entry has.
    TagChipRow(const QStringList &tagNames, const QStringList &selected,
               const SystemColors &colors, QWidget *parent = nullptr);

    void setColors(const SystemColors &colors);

    /// Whether chips grow under the pointer bit by bit, which they do unless told otherwise.
    void setAnimated(bool isAnimated);

    const QList<TagHoverContainer *> &chips() const { return m_chips; }

    QSize sizeHint() const override { return m_size; }

    /// Called with the name of a tag that the person has turned on or off.
    std::function<void(const QString &name)> onToggle;

protected:
    void focusInEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *) override {}
    void mouseReleaseEvent(QMouseEvent *) override {}
    void paintEvent(QPaintEvent *event) override;

private:
    void placeChips();
    TagHoverContainer *focusedChip() const;
    TagHoverContainer *neighbour(const TagHoverContainer &chip, int key) const;

    SystemColors m_colors;
    QList<TagHoverContainer *> m_chips;
    QSize m_size;
};
