#pragma once

#include "widgets/DrawnControl.h"

/// One pane in the list of panes.
class SidebarItem : public DrawnControl
{
    Q_OBJECT

public:
    static constexpr int kHeight = 32;

    SidebarItem(const SystemColors &colors, const QString &symbol, QWidget *parent);

    QSize sizeHint() const override { return {0, kHeight}; }
    qreal radius() const override;

protected:
    void draw(QPainter &painter) const override;

private:
    QString m_symbol;
};
