#pragma once

#include <QObject>

class DesktopAppearance;
class QWidget;

/// Has the desktop blur what shines through a round-cornered window, whatever its size.
class BlurBehind : public QObject
{
    Q_OBJECT

public:
    /// Both must outlive the object.
    BlurBehind(QWidget &window, qreal cornerRadius, DesktopAppearance &appearance);
    ~BlurBehind() override;

    void setWanted(bool isWanted);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void tell();

    QWidget &m_window;
    qreal m_cornerRadius;
    DesktopAppearance &m_appearance;
    bool m_isWanted = false;
};
