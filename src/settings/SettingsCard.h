#pragma once

#include "appearance/SystemColors.h"

#include <QWidget>

class QHBoxLayout;
class QVBoxLayout;
class SettingsLabel;

/// A group of rows on a ground of its own, with lines between them.
class SettingsCard : public QWidget
{
    Q_OBJECT

public:
    SettingsCard(const SystemColors &colors, QWidget *parent);

    /// A row that begins with a name; controls are added to the layout that is returned, and stand
    /// at the right end.
    QHBoxLayout *addRow(SettingsLabel *name);

    /// A row for a button and what belongs to it.
    QHBoxLayout *addButtonRow();

    /// A name for a row, in the type of all names.
    SettingsLabel *makeName();

    /// A text for the right end of a row.
    SettingsLabel *makeValue();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QHBoxLayout *addRow(int height);

    const SystemColors &m_colors;
    QVBoxLayout *m_rows = nullptr;
};
