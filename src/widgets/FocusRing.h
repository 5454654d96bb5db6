#pragma once

#include "appearance/SystemColors.h"

#include <QPointer>
#include <QWidget>

class DrawnControl;

/// Stands around the control that got the focus by the keyboard, above everything else in the
/// window and out of the pointer's way.
class FocusRing : public QWidget
{
    Q_OBJECT

public:
    /// Watches all controls that \a window has by now.
    FocusRing(const SystemColors &colors, QWidget *window);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void follow(DrawnControl *control);
    void place();

    const SystemColors &m_colors;
    QPointer<DrawnControl> m_control;
};
