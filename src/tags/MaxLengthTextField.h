#pragma once

#include "appearance/SystemColors.h"
#include "tags/TagManager.h"
#include "widgets/TextField.h"

#include <functional>

/// A boxed field that takes no more than so many characters. What is too much goes with a beep,
/// though not while an input method composes.
class MaxLengthTextField : public TextField
{
    Q_OBJECT

public:
    static constexpr int kRingRoom = 2; ///< Around the box, for the focus ring.

    explicit MaxLengthTextField(const SystemColors &colors, QWidget *parent = nullptr);

    /// Takes the size of the text from the desktop as well.
    void setColors(const SystemColors &colors);

    /// The box, without the room for the ring.
    void setBoxSize(const QSize &size);

    /// In characters as a reader counts them; as many as a tag may have unless set.
    void setCharacterLimit(qsizetype limit) { m_characterLimit = limit; }

    /// Called when something was cut off. Beeps unless set.
    std::function<void()> onTooLong;

protected:
    void inputMethodEvent(QInputMethodEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void textDidChange();

    SystemColors m_colors;
    qsizetype m_characterLimit = TagManager::maxTagLength;
    bool m_isComposing = false;
};
