#pragma once

#include "appearance/SystemColors.h"

#include <QStringList>
#include <QWidget>

/// A key combination as keys with their names on them.
class KeyCapsView : public QWidget
{
    Q_OBJECT

public:
    KeyCapsView(const SystemColors &colors, QWidget *parent);

    QStringList keys() const { return m_keys; }
    void setKeys(const QStringList &keys);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const SystemColors &m_colors;
    QStringList m_keys;
};
