#pragma once

#include "appearance/SystemColors.h"

#include <QWidget>

class QVBoxLayout;
class SettingsCard;
class SettingsLabel;

/// One pane: cards below each other from the top, and nothing stretched to fill the rest.
///
/// \a colors belong to the window, which repaints itself when they change.
class SettingsPaneView : public QWidget
{
    Q_OBJECT

public:
    SettingsPaneView(const SystemColors &colors, QWidget *parent);

    /// Makes all texts anew.
    virtual void refreshLanguage() = 0;

    /// Reads again what may have changed while the person was elsewhere.
    virtual void refresh() {}

protected:
    const SystemColors &colors() const { return m_colors; }

    /// The name over the card that is added next.
    SettingsLabel *addHeading();
    SettingsCard *addCard();
    void addView(QWidget *view);

private:
    const SystemColors &m_colors;
    QVBoxLayout *m_column = nullptr;
    int m_nextGap = 0; ///< Above the view that is added next.
};
