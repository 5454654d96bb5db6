#pragma once

#include <QLineEdit>

/// A line edit that never asks for the clipboard, since Qt would wait for its owner, for seconds if
/// that is silent.
class TextField : public QLineEdit
{
    Q_OBJECT

public:
    explicit TextField(QWidget *parent = nullptr);

signals:
    void pastePressed(); ///< What is to be put in is the business of whoever owns the field.

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
};
