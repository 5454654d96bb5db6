#pragma once

#include "widgets/MenuLook.h"

#include <QPixmap>
#include <QWidget>

/// A bubble with a few words, in a window of its own that lets everything through.
class FavoriteLimitHintOverlayView : public QWidget
{
    Q_OBJECT

public:
    /// Where the bubble is on its way in or out.
    struct Pose
    {
        qreal scale = 1;
        qreal opacity = 1;
        qreal shift = 0; ///< To the right.
    };

    /// The bubble has its natural size, with the room around it that its shadow takes.
    FavoriteLimitHintOverlayView(const QString &message, const Look &look);

    void setColors(const SystemColors &colors);

    /// Where the desktop does not blend windows, the bubble is there or not, and has no poses.
    void setPose(const Pose &pose);
    const Pose &pose() const { return m_pose; }

    /// The bubble within the window.
    QRect bubble() const;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void paintBubble(QPainter &painter) const;
    void paintShadow(QPainter &painter) const;
    QPixmap picture() const;

    QString m_message;
    bool m_isTranslucent;
    SystemColors m_colors;
    Pose m_pose;
    QPixmap m_picture; ///< The bubble as it rests.
};
