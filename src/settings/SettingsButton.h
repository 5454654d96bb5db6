#pragma once

#include "settings/SettingsControl.h"

/// A push button with a text, and a symbol before it if wanted. A checkable one is filled with the
/// accent while it is checked.
class SettingsButton : public SettingsControl
{
    Q_OBJECT

public:
    using SettingsControl::SettingsControl;

    void setSymbol(const QString &name);

    /// Text and symbol say that something is under way.
    void setAlarming(bool isAlarming);

    QSize sizeHint() const override;
    qreal radius() const override;

protected:
    void draw(QPainter &painter) const override;

private:
    QString m_symbol;
    bool m_isAlarming = false;
};
