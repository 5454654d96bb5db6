#pragma once

#include "widgets/DrawnControl.h"

/// Goes back or forward among the panes.
class HistoryStepButton : public DrawnControl
{
    Q_OBJECT

public:
    HistoryStepButton(const SystemColors &colors, const QString &symbol, QWidget *parent);

    QSize sizeHint() const override;
    qreal radius() const override;

protected:
    void draw(QPainter &painter) const override;

private:
    QString m_symbol;
};
