#pragma once

#include "widgets/DrawnControl.h"

#include <optional>

/// A push button with a text, and a symbol before it if wanted. A checkable one looks like a primary
/// one while it is checked.
class PushButton : public DrawnControl
{
    Q_OBJECT

public:
    using DrawnControl::DrawnControl;

    enum class Emphasis { Plain, Primary, Destructive };

    void setEmphasis(Emphasis emphasis);

    void setSymbol(const QString &name);

    /// Text and symbol say that something is under way.
    void setAlarming(bool isAlarming);

    /// How far the text stands from both ends. Set, it leaves a short text its short button.
    void setPadding(int padding);

    QSize sizeHint() const override;
    qreal radius() const override;

protected:
    void draw(QPainter &painter) const override;

private:
    int padding() const;

    QString m_symbol;
    std::optional<int> m_padding;
    Emphasis m_emphasis = Emphasis::Plain;
    bool m_isAlarming = false;
};
