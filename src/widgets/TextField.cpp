#include "widgets/TextField.h"

#include <QKeyEvent>

TextField::TextField(QWidget *parent)
    : QLineEdit(parent)
{
    // Qt's menu looks at the clipboard before it opens.
    setContextMenuPolicy(Qt::NoContextMenu);
}

void TextField::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Paste)) {
        emit pastePressed();
        event->accept();
    } else {
        QLineEdit::keyPressEvent(event);
    }
}

void TextField::mouseReleaseEvent(QMouseEvent *event)
{
    // The middle button would paste.
    if (event->button() == Qt::MiddleButton)
        event->accept();
    else
        QLineEdit::mouseReleaseEvent(event);
}
