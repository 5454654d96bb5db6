#pragma once

#include "widgets/MenuLook.h"
#include "widgets/RaisedCard.h"

#include <QPointer>
#include <QWidget>

class PushButton;

/// A question that lies over one of our windows, veils it and keeps its input to itself until it is
/// answered. It is part of that window and goes with it.
class AlertSheet : public QWidget
{
    Q_OBJECT

public:
    enum class Kind { Plain, Destructive };

    struct Texts
    {
        QString title;
        QString information;
        QString confirm;
        QString cancel;
    };

    AlertSheet(const Texts &texts, Kind kind, const Look &look, QWidget *window);
    ~AlertSheet() override;

    /// Stands between the texts and the buttons, and gets the focus. Has a size of its own. To be
    /// called before open(); \a margin of the view lies outside of what is to be aligned.
    void setAccessoryView(QWidget *view, int margin);

    const SystemColors &colors() const { return m_colors; }

    /// May be called while the sheet is open.
    virtual void setLook(const Look &look);

    /// Takes the focus: the accessory view, else the button that does no harm.
    void open();

    // As if the person had chosen the button. Only the first answer counts.
    void confirm();
    void cancel();

signals:
    void confirmed();
    void cancelled();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    bool focusNextPrevChild(bool next) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *) override {}
    void mouseReleaseEvent(QMouseEvent *) override {}
    void mouseDoubleClickEvent(QMouseEvent *) override {}
    void mouseMoveEvent(QMouseEvent *) override {}
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    PushButton *addButton(const QString &title);
    void layOut();
    void keepFocus(QWidget *now);
    QWidgetList focusOrder() const;
    void close(void (AlertSheet::*answer)());

    Texts m_texts;
    Look m_look;
    SystemColors m_colors;
    RaisedCard m_card;
    QRect m_cardRect;
    QStringList m_lines; ///< Of the information.
    PushButton *m_confirmButton;
    PushButton *m_cancelButton;
    QWidget *m_firstFocus;
    QWidget *m_accessoryView = nullptr;
    int m_accessoryMargin = 0;
    bool m_isAnswered = false;
    QPointer<QWidget> m_formerFocus;
    QPointer<QWidget> m_lastFocus; ///< Within the sheet.
};
