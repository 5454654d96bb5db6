#include "platform/linux/StatusNotifierItem.h"

#include "platform/linux/ScreenPoint.h"
#include "platform/linux/SessionBus.h"
#include "platform/linux/StatusIconDrawing.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QtEndian>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

const auto kItemPath = u"/StatusNotifierItem"_s; // Watchers look there.
const auto kMenuPath = u"/MenuBar"_s;
const auto kTitle = u"Tessarine"_s;

/// What panels ask for; each is drawn for itself, since a scaled icon is blurred.
constexpr int kIconSides[] = {16, 22, 24, 32, 48, 64};

} // namespace

namespace statusnotifier {

/// A picture as it goes over the bus: lines of ARGB, the most significant byte first.
struct Pixmap
{
    int width = 0;
    int height = 0;
    QByteArray bytes;
};

struct ToolTip
{
    QString iconName;
    QList<Pixmap> icon;
    QString title;
    QString text;
};

QDBusArgument &operator<<(QDBusArgument &argument, const Pixmap &pixmap)
{
    argument.beginStructure();
    argument << pixmap.width << pixmap.height << pixmap.bytes;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, Pixmap &pixmap)
{
    argument.beginStructure();
    argument >> pixmap.width >> pixmap.height >> pixmap.bytes;
    argument.endStructure();
    return argument;
}

QDBusArgument &operator<<(QDBusArgument &argument, const ToolTip &toolTip)
{
    argument.beginStructure();
    argument << toolTip.iconName << toolTip.icon << toolTip.title << toolTip.text;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, ToolTip &toolTip)
{
    argument.beginStructure();
    argument >> toolTip.iconName >> toolTip.icon >> toolTip.title >> toolTip.text;
    argument.endStructure();
    return argument;
}

} // namespace statusnotifier

namespace {

statusnotifier::Pixmap pixmapOf(const QImage &image)
{
    const QImage plain = image.convertToFormat(QImage::Format_ARGB32);
    QByteArray bytes(plain.width() * plain.height() * qsizetype(sizeof(QRgb)), Qt::Uninitialized);
    char *place = bytes.data();
    for (int y = 0; y < plain.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(plain.constScanLine(y));
        qToBigEndian<QRgb>(line, plain.width(), place);
        place += plain.width() * qsizetype(sizeof(QRgb));
    }
    return {plain.width(), plain.height(), bytes};
}

} // namespace

/// The names are the bus's.
class StatusNotifierItem::Object : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category CONSTANT)
    Q_PROPERTY(QString Id READ id CONSTANT)
    Q_PROPERTY(QString Title READ title CONSTANT)
    Q_PROPERTY(QString Status READ status CONSTANT)
    Q_PROPERTY(int WindowId READ windowId CONSTANT)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu CONSTANT)
    Q_PROPERTY(QDBusObjectPath Menu READ menu CONSTANT)
    Q_PROPERTY(QString IconThemePath READ nothing CONSTANT)
    Q_PROPERTY(QString IconName READ nothing CONSTANT)
    Q_PROPERTY(QString IconAccessibleDesc READ description)
    Q_PROPERTY(QList<statusnotifier::Pixmap> IconPixmap READ iconPixmap)
    Q_PROPERTY(QString OverlayIconName READ nothing CONSTANT)
    Q_PROPERTY(QList<statusnotifier::Pixmap> OverlayIconPixmap READ noPixmap CONSTANT)
    Q_PROPERTY(QString AttentionIconName READ nothing CONSTANT)
    Q_PROPERTY(QList<statusnotifier::Pixmap> AttentionIconPixmap READ noPixmap CONSTANT)
    Q_PROPERTY(QString AttentionMovieName READ nothing CONSTANT)
    Q_PROPERTY(statusnotifier::ToolTip ToolTip READ toolTip)

public:
    explicit Object(StatusNotifierItem &owner)
        : m_owner(owner)
    {
        qDBusRegisterMetaType<statusnotifier::Pixmap>();
        qDBusRegisterMetaType<QList<statusnotifier::Pixmap>>();
        qDBusRegisterMetaType<statusnotifier::ToolTip>();
    }

    QString category() const { return u"ApplicationStatus"_s; }
    QString id() const { return u"tessarine"_s; }
    QString title() const { return kTitle; }
    QString status() const { return u"Active"_s; }
    int windowId() const { return 0; }
    bool itemIsMenu() const { return false; }
    QDBusObjectPath menu() const { return QDBusObjectPath(kMenuPath); }
    QString nothing() const { return {}; }
    QString description() const { return m_description; }
    QList<statusnotifier::Pixmap> noPixmap() const { return {}; }
    statusnotifier::ToolTip toolTip() const { return {{}, {}, m_description, {}}; }

    QList<statusnotifier::Pixmap> iconPixmap() const
    {
        QList<statusnotifier::Pixmap> pixmaps;
        if (!m_painter)
            return pixmaps;
        for (const int side : kIconSides)
            pixmaps.append(pixmapOf(drawIconInto({side, side}, m_painter, m_color)));
        return pixmaps;
    }

    void setIcon(IconPainter painter, const QString &description)
    {
        m_painter = std::move(painter);
        m_description = description;
        emit NewIcon();
        emit NewToolTip();
    }

    void setColor(const QColor &color)
    {
        if (std::exchange(m_color, color) != color)
            emit NewIcon();
    }

public slots:
    void ProvideXdgActivationToken(const QString &token) { m_activationToken = token; }

    void Activate(int, int)
    {
        const QString token = std::exchange(m_activationToken, QString());
        if (m_owner.onClicked)
            m_owner.onClicked(token);
    }

    void ContextMenu(int x, int y)
    {
        if (m_owner.onMenuRequested)
            m_owner.onMenuRequested(deviceIndependent(QPoint(x, y)));
    }

    void SecondaryActivate(int, int) {}
    void Scroll(int, const QString &) {}

signals:
    void NewTitle();
    void NewIcon();
    void NewAttentionIcon();
    void NewOverlayIcon();
    void NewToolTip();
    void NewStatus(const QString &status);

private:
    StatusNotifierItem &m_owner;
    IconPainter m_painter;
    QString m_description = kTitle;
    QColor m_color = iconColorOnUnknownGround();
    QString m_activationToken; ///< For the click that follows.
};

StatusNotifierItem::StatusNotifierItem()
    : m_object(std::make_unique<Object>(*this))
{
    m_hosts.onWatcherStarted = [this] {
        m_isRegistered = false;
        registerIfPossible();
    };
    m_hosts.onChanged = [this] {
        if (onHostsChanged)
            onHostsChanged();
    };
    m_menu.onWillOpen = [this] {
        if (onMenuWillOpen)
            onMenuWillOpen();
    };
    m_menu.onEntryChosen = [this](int id) {
        if (onMenuEntryChosen)
            onMenuEntryChosen(id);
    };
}

StatusNotifierItem::~StatusNotifierItem() = default;

bool StatusNotifierItem::create()
{
    m_isOffered = m_isOffered ||
                  (m_menu.offer(kMenuPath) && offerOnSessionBus(kItemPath, *m_object));
    registerIfPossible();
    return m_isOffered && m_hosts.hasWatcher() &&
           m_hosts.presence() != StatusNotifierHosts::Presence::Absent;
}

void StatusNotifierItem::setIcon(IconPainter painter, const QString &description)
{
    m_object->setIcon(std::move(painter), description);
}

void StatusNotifierItem::setMenu(const QList<StatusMenuEntry> &entries)
{
    m_menu.setEntries(entries);
}

void StatusNotifierItem::setColor(const QColor &color)
{
    m_object->setColor(color);
}

void StatusNotifierItem::registerIfPossible()
{
    if (!m_isOffered || !m_hosts.hasWatcher() || std::exchange(m_isRegistered, true))
        return;
    m_hosts.registerItem();
}

#include "StatusNotifierItem.moc"
