#pragma once

#include "appearance/SymbolImage.h"

#include <QWidget>

/// Shows one symbol in its middle.
class SymbolView : public QWidget
{
    Q_OBJECT

public:
    SymbolView(const Symbol &symbol, QWidget *parent);

    void setColor(const QColor &color);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    Symbol m_symbol;
    QColor m_color;
};
