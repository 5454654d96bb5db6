#include "settings/AboutPane.h"

#include "language/Localized.h"
#include "settings/SettingsCard.h"
#include "settings/SettingsLabel.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QPainter>
#include <QSvgRenderer>

using namespace Qt::StringLiterals;

namespace {

constexpr int kIconSide = 56;
constexpr int kIconGap = 12;
constexpr int kNameSize = 19;
constexpr int kVersionSize = 12;

/// The program's icon in its own colours.
class ApplicationIcon : public QWidget
{
public:
    explicit ApplicationIcon(QWidget *parent)
        : QWidget(parent)
    {
        setFixedSize(kIconSide, kIconSide);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        QSvgRenderer(u":/symbols/app/tessarine.svg"_s).render(&painter);
    }
};

} // namespace

AboutPane::AboutPane(const SystemColors &colors, QWidget *parent)
    : SettingsPaneView(colors, parent)
{
    buildHead();
    buildLicence();
}

void AboutPane::refreshLanguage()
{
    m_appName->setText(localized(u"settings.about.app_name"_s, u"Tessarine"_s));
    m_version->setText(localized(u"settings.about.version"_s, u"Version"_s) + u' ' +
                       QCoreApplication::applicationVersion());
    m_licenceName->setText(localized(u"settings.about.license"_s, u"License"_s));
    m_licence->setText(localized(u"settings.about.license.name"_s, u"MIT License"_s));
}

void AboutPane::buildHead()
{
    auto *head = new QWidget(this);
    auto *row = new QHBoxLayout(head);
    row->setContentsMargins(2, 8, 0, 0);
    row->setSpacing(kIconGap);
    row->addWidget(new ApplicationIcon(head));
    auto *texts = new QVBoxLayout;
    texts->setSpacing(2);
    m_appName = new SettingsLabel(colors(), {kNameSize, QFont::DemiBold},
                                  &SystemColors::labelColor, head);
    m_version = new SettingsLabel(colors(), {kVersionSize},
                                  &SystemColors::secondaryLabelColor, head);
    m_version->setObjectName(u"version"_s);
    texts->addStretch(1);
    texts->addWidget(m_appName);
    texts->addWidget(m_version);
    texts->addStretch(1);
    row->addLayout(texts, 1);
    addView(head);
}

void AboutPane::buildLicence()
{
    SettingsCard *card = addCard();
    m_licenceName = card->makeName();
    m_licence = card->makeValue();
    card->addRow(m_licenceName)->addWidget(m_licence);
}
