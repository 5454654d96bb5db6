#pragma once

#include "widgets/AlertSheet.h"

class MaxLengthTextField;

/// Asks for the name of a new tag.
class NewTagAlert : public AlertSheet
{
    Q_OBJECT

public:
    NewTagAlert(const Look &look, QWidget *window);

    /// The name as it was typed.
    QString name() const;

    MaxLengthTextField &field() { return *m_field; }

    void setLook(const Look &look) override;

private:
    MaxLengthTextField *m_field;
};
