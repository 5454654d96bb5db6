#include "settings/SettingsView.h"

#include "appearance/Hairline.h"
#include "language/Localized.h"
#include "platform/DesktopAppearance.h"
#include "settings/AboutPane.h"
#include "settings/GeneralPane.h"
#include "settings/HistoryStepButton.h"
#include "settings/ShortcutsPane.h"
#include "settings/SidebarItem.h"
#include "widgets/AccessibleFactory.h"
#include "widgets/DesktopLook.h"
#include "widgets/FocusRing.h"
#include "widgets/MenuLook.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QStackedWidget>
#include <QWindow>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize kSize(760, 540);
constexpr QSize kLeastSize(700, 500);
constexpr int kSidebarWidth = 188;
constexpr int kSidebarLine = 1;
constexpr QMargins kSidebarMargins(10, 12, 10, 12);
constexpr int kSidebarGap = 2;
constexpr int kBarHeight = 48;
constexpr int kBarInset = 16;

} // namespace

SettingsView::SettingsView(const SettingsCollaborators &collaborators)
    : QWidget(nullptr, Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                           Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint |
                           Qt::WindowStaysOnTopHint)
    , m_collaborators(collaborators)
    , m_paneHistory(availablePanes().first())
{
    installAccessible<SettingsView, RoleAccessible<QAccessible::Window>>();
    setAttribute(Qt::WA_QuitOnClose, false);
    setMinimumSize(kLeastSize);
    resize(kSize);
    // In the order in which the Tab key goes through them.
    buildSidebar();
    buildBar();
    buildPanes();
    arrange();
    new FocusRing(m_colors, this);
    refreshAppearance();
    refreshLanguage();
    showPane();
    m_items.value(selectedPane())->setFocus();
}

void SettingsView::refreshLanguage()
{
    for (const auto &[pane, item] : m_items.asKeyValueRange())
        item->setText(title(pane));
    m_backButton->setAccessibleName(localized(u"settings.history.back"_s, u"Back"_s));
    m_forwardButton->setAccessibleName(localized(u"settings.history.forward"_s, u"Forward"_s));
    for (HistoryStepButton *button : {m_backButton, m_forwardButton})
        button->setToolTip(button->accessibleName());
    for (SettingsPaneView *view : std::as_const(m_panes))
        view->refreshLanguage();
    setWindowTitle(localized(u"settings.window.title"_s, u"Settings"_s));
}

void SettingsView::refreshAppearance()
{
    const Look look = this->look();
    m_colors = look.colors();
    for (QMenu *menu : findChildren<QMenu *>())
        recolorMenu(*menu, look);
    if (std::exchange(m_textScale, look.textScale) != look.textScale) {
        for (QWidget *view : findChildren<QWidget *>())
            view->updateGeometry();
    }
    update();
}

void SettingsView::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        m_panes.value(selectedPane())->refresh();
}

void SettingsView::closeEvent(QCloseEvent *event)
{
    QWidget::closeEvent(event);
    emit closed();
}

bool SettingsView::event(QEvent *event)
{
    if (event->type() == QEvent::ApplicationPaletteChange)
        refreshAppearance();
    return QWidget::event(event);
}

/// The window can be taken by any place where there is nothing to click.
void SettingsView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && windowHandle())
        windowHandle()->startSystemMove();
}

void SettingsView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), m_colors.windowBackgroundColor);
    painter.fillRect(0, 0, kSidebarWidth, height(), m_colors.sidebarColor);
    drawHairline(painter, QRect(kSidebarWidth, 0, kSidebarLine, height()),
                 m_colors.separatorLineColor());
}

void SettingsView::buildSidebar()
{
    m_sidebar = new QWidget(this);
    m_sidebar->setFixedWidth(kSidebarWidth);
    auto *column = new QVBoxLayout(m_sidebar);
    column->setContentsMargins(kSidebarMargins);
    column->setSpacing(kSidebarGap);
    for (const SettingsPane pane : availablePanes()) {
        auto *item = new SidebarItem(m_colors, symbolName(pane), m_sidebar);
        item->setObjectName(u"pane."_s + symbolName(pane));
        column->addWidget(item);
        m_items.insert(pane, item);
        connect(item, &SidebarItem::clicked, this, [this, pane] { visitPane(pane); });
    }
    column->addStretch();
}

void SettingsView::buildBar()
{
    m_backButton = new HistoryStepButton(m_colors, u"chevron.backward"_s, this);
    m_backButton->setObjectName(u"backButton"_s);
    m_forwardButton = new HistoryStepButton(m_colors, u"chevron.forward"_s, this);
    m_forwardButton->setObjectName(u"forwardButton"_s);
    connect(m_backButton, &HistoryStepButton::clicked, this,
            [this] { step(&PaneHistory::goBack); });
    connect(m_forwardButton, &HistoryStepButton::clicked, this,
            [this] { step(&PaneHistory::goForward); });
}

void SettingsView::buildPanes()
{
    m_stack = new QStackedWidget(this);
    const auto lookSource = [this] { return look(); };
    auto *general = new GeneralPane(m_colors, lookSource, m_collaborators.languages,
                                    m_collaborators.defaults, m_stack);
    connect(general, &GeneralPane::pinButtonVisibilityChanged, this,
            &SettingsView::pinButtonVisibilityChanged);
    addPane(SettingsPane::General, general);
    addPane(SettingsPane::Shortcuts,
            new ShortcutsPane(m_colors, lookSource, m_collaborators.hotkeySettings,
                              m_collaborators.globalHotkey, m_stack));
    addPane(SettingsPane::About, new AboutPane(m_colors, m_stack));
}

void SettingsView::arrange()
{
    auto *bar = new QHBoxLayout;
    bar->setContentsMargins(kBarInset, 0, kBarInset, 0);
    bar->setSpacing(0);
    bar->addWidget(m_backButton);
    bar->addWidget(m_forwardButton);
    bar->addStretch();
    auto *barHolder = new QWidget(this);
    barHolder->setLayout(bar);
    barHolder->setFixedHeight(kBarHeight);

    auto *column = new QVBoxLayout;
    column->setSpacing(0);
    column->addWidget(barHolder);
    column->addWidget(m_stack, 1);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(m_sidebar);
    row->addSpacing(kSidebarLine);
    row->addLayout(column, 1);
}

void SettingsView::addPane(SettingsPane pane, SettingsPaneView *view)
{
    m_stack->addWidget(view);
    m_panes.insert(pane, view);
}

Look SettingsView::look() const
{
    return desktopLook(m_collaborators.appearance);
}

void SettingsView::visitPane(SettingsPane pane)
{
    m_paneHistory.visit(pane);
    showPane();
}

void SettingsView::step(void (PaneHistory::*direction)())
{
    (m_paneHistory.*direction)();
    showPane();
}

void SettingsView::showPane()
{
    const SettingsPane pane = selectedPane();
    m_items.value(pane)->setChecked(true);
    m_backButton->setEnabled(m_paneHistory.canGoBack());
    m_forwardButton->setEnabled(m_paneHistory.canGoForward());
    m_stack->setCurrentWidget(m_panes.value(pane));
    m_panes.value(pane)->refresh();
    setWindowTitle(title(pane));
}
