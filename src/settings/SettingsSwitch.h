#pragma once

#include "widgets/DrawnControl.h"

/// Turns one thing on and off.
class SettingsSwitch : public DrawnControl
{
    Q_OBJECT

public:
    SettingsSwitch(const SystemColors &colors, QWidget *parent);

    QSize sizeHint() const override;
    qreal radius() const override;

protected:
    void draw(QPainter &painter) const override;
};
