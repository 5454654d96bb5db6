#pragma once

#include "widgets/DrawnControl.h"
#include "widgets/MenuLook.h"

#include <QStringList>

/// Shows one of several texts, and all of them in a menu to choose another.
class SettingsPicker : public DrawnControl
{
    Q_OBJECT

public:
    /// Tells how the window, and so the menu, looks at the moment.
    using LookSource = std::function<Look()>;

    SettingsPicker(const SystemColors &colors, LookSource look, QWidget *parent);

    /// Keeps the index.
    void setOptions(const QStringList &options);

    /// Of the text that is shown; below zero if none is.
    int currentIndex() const { return m_currentIndex; }
    void setCurrentIndex(int index);

    QSize sizeHint() const override;
    qreal radius() const override;

signals:
    /// The person has chosen an option, which may be the one from before.
    void chosen(int index);

protected:
    void draw(QPainter &painter) const override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void openMenu();
    void choose(int index);

    LookSource m_look;
    QStringList m_options;
    int m_currentIndex = -1;
};
