#pragma once

#include "appearance/SystemColors.h"
#include "window/HistoryWindowStyle.h"

#include <QPointer>
#include <QWidget>

#include <optional>

/// The frameless window itself, as the desktop knows it. What stands in it is another for each
/// opening, while the window may stay the same.
class WindowShell : public QWidget
{
    Q_OBJECT

public:
    explicit WindowShell(const HistoryWindowStyle &style);

    const HistoryWindowStyle &style() const { return m_style; }

    /// \a content, a child that need not outlive the window, fills it from now on.
    void setContent(QWidget &content);

    void setColors(const SystemColors &colors);

signals:
    void cancelRequested(); ///< Esc for which no view has had a use.
    void deactivated(); ///< Another window has got the keyboard.
    /// By the window manager, or since the program ends, which a window that stays would prevent.
    void closeRequested();
    void desktopColorsChanged();

protected:
    void changeEvent(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    bool event(QEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void moveEvent(QMoveEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void cutShape();
    void paintStrongEdge(QPainter &painter) const;

    HistoryWindowStyle m_style;
    SystemColors m_colors;
    QPointer<QWidget> m_content;
    /// Where the window was shown, until the first news of a move or of the focus.
    std::optional<QPoint> m_placeWhenShown;
};
