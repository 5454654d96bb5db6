#pragma once

#include "appearance/SystemColors.h"
#include "window/FilterCategory.h"

#include <QAbstractButton>

#include <optional>

/// One pill of the filter bar. It is selected by its owner, not by being clicked.
///
/// It never gets the focus by a click, so whenever it has the focus that is to be seen.
class FilterButton : public QAbstractButton
{
    Q_OBJECT

public:
    static constexpr int kHeight = 26;

    /// Without a category the pill opens a menu.
    FilterButton(const std::optional<FilterCategory> &category, QWidget *parent);

    const std::optional<FilterCategory> &filterCategory() const { return m_filterCategory; }

    void setTitle(const QString &title);
    void setColors(const SystemColors &colors);
    void setSelected(bool isSelected);
    bool isSelected() const { return m_isSelected; }

    /// Where on the screen the mouse lets go, while that tells clicked(). Absent otherwise, so also
    /// when the click is one of the keyboard.
    const std::optional<QPoint> &releasePosition() const { return m_releasePosition; }

    /// Wide enough for the title.
    int naturalWidth() const { return naturalWidth(text()); }
    static int naturalWidth(const QString &title);

signals:
    void focusChanged();

protected:
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    qreal alpha() const;
    QColor groundColor() const;
    QColor borderColor() const;
    QColor titleColor() const;

    std::optional<FilterCategory> m_filterCategory;
    SystemColors m_colors;
    bool m_isSelected = false;
    std::optional<QPoint> m_releasePosition;
};
