#pragma once

#include <QColor>
#include <QWidget>

/// A thin line between two parts of the window.
class SeparatorLine : public QWidget
{
    Q_OBJECT

public:
    explicit SeparatorLine(QWidget *parent);

    void setColor(const QColor &color);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QColor m_color;
};
