#pragma once

#include "appearance/SystemColors.h"
#include "widgets/FocusVisibility.h"

#include <QAbstractButton>

/// Keeps the window open when the person turns to something else, while it is checked.
class PinButton : public QAbstractButton
{
    Q_OBJECT

public:
    explicit PinButton(QWidget *parent = nullptr);

    bool isPinned() const { return isChecked(); }
    void setPinned(bool isPinned) { setChecked(isPinned); }
    void setColors(const SystemColors &colors);

    /// Words the tool tip anew, and the name.
    void refreshLanguage();

    bool isFocusVisible() const { return m_focusVisibility.isVisible(); }

protected:
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void updateRing();

    SystemColors m_colors;
    FocusVisibility m_focusVisibility;
};
