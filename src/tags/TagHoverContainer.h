#pragma once

#include "appearance/SystemColors.h"

#include <QAbstractButton>
#include <QVariantAnimation>

#include <functional>

/// A chip: one tag as a small switch, on if the entry has the tag.
///
/// Under the pointer it stands out beyond its own rectangle, so the row that it belongs to draws it.
class TagHoverContainer : public QAbstractButton
{
    Q_OBJECT

public:
    static constexpr int mainButtonHeight = 22;
    static constexpr int circleTapAreaWidth = 18;

    TagHoverContainer(const QString &tagText, bool isSelectedTag, QWidget *parent);

    const QString &tagText() const { return m_tagText; }
    bool isSelectedTag() const { return isChecked(); }

    /// As wide as the name needs, within limits.
    int buttonWidth() const;

    /// Whether the chip grows under the pointer bit by bit.
    void setAnimated(bool isAnimated) { m_isAnimated = isAnimated; }

    /// Draws the chip on its parent.
    void draw(QPainter &painter, const SystemColors &colors) const;

    /// What draw() touches.
    QRect drawnRect() const;

    /// Whether the chip stands above its neighbours at this moment.
    bool isRaised() const { return m_scale > 1; }

    /// Called when the person has turned the chip on or off.
    std::function<void(const QString &tagText)> onToggle;

protected:
    void enterEvent(QEnterEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *) override {}

private:
    void handleToggle();
    void setContainerHovering(bool isHovering);
    void setScale(qreal scale);
    void updateDrawnRect();

    QString m_tagText;
    bool m_isAnimated = true;
    bool m_isContainerHovering = false;
    bool m_isFocusVisible = false;
    qreal m_scale = 1;
    QVariantAnimation m_hover;
};
