#pragma once

#include "appearance/SystemColors.h"
#include "widgets/TextField.h"

#include <memory>

class ScheduledWork;
class Scheduler;

/// The field of the window's head: bare text and a caret. The keys that move through the list and
/// act on it are told by signals and do not edit.
class SearchField : public TextField
{
    Q_OBJECT

public:
    /// \a scheduler must outlive the field.
    explicit SearchField(Scheduler &scheduler, QWidget *parent = nullptr);
    ~SearchField() override;

    void setColors(const SystemColors &colors);

    /// Takes the size of its text from the desktop again.
    void refreshFont();

signals:
    void cancelPressed();
    void newlinePressed();
    void moveDownPressed();
    void moveUpPressed();
    /// Qt::Key_PageUp, Qt::Key_PageDown or Qt::Key_Menu, which Shift+F10 stands for too: what the
    /// list does with it alone.
    void listKeyPressed(int key);

protected:
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    bool announceKey(int key);
    QRectF caretRect() const;
    qreal baseline() const;
    void drawPlaceholder(QPainter &painter);
    void startBlinking();
    void stopBlinking();

    Scheduler &m_scheduler;
    std::unique_ptr<QStyle> m_style;
    std::unique_ptr<ScheduledWork> m_blinking;
    QColor m_caretColor;
    QColor m_placeholderColor;
    bool m_isCaretShown = false;
    bool m_isComposing = false; ///< An input method shows what it has so far.
};
