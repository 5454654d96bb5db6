#pragma once

#include "appearance/SystemColors.h"

#include <QAbstractButton>

/// One pill of the filter bar.
class FilterButton : public QAbstractButton
{
    Q_OBJECT

public:
    static constexpr int kHeight = 26;

    explicit FilterButton(QWidget *parent = nullptr);

    void setColors(const SystemColors &colors);
    void setSelected(bool isSelected);
    bool isSelected() const { return m_isSelected; }

    /// Wide enough for the title.
    int naturalWidth() const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    SystemColors m_colors;
    bool m_isSelected = false;
};
