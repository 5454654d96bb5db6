#include "platform/x11/X11SelectionReader.h"

#include "platform/linux/MimeTypes.h"
#include "platform/linux/UriList.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// An owner that sends nothing for so long is given up. Some make a large picture only when they are
/// asked for it.
constexpr auto kSilence = 5s;
/// Some owners leave a question lying that came while they took the selection, until another event
/// wakes them. After so long a silence one more question does.
constexpr auto kNudgeAfter = 200ms;
constexpr int kMaxNudges = 4;
/// An owner that trickles gets this time for the whole copy, and a second more for each
/// kSlowestBytesPerSecond that have come, so that a slow line still brings a large copy.
constexpr auto kPatience = 20s;
constexpr qint64 kSlowestBytesPerSecond = 64 << 10;
/// How long, and for how many, the windows of transfers given up are kept. The owner's pieces are
/// thrown away unread, so that it comes to its end rather than waiting for us for ever.
constexpr auto kAbandonedLife = 30s;
constexpr std::size_t kMaxAbandoned = 64;
/// No program offers so many; behind them nothing but the mark of a secret is looked for.
constexpr qsizetype kMaxOfferedTargets = 512;
constexpr qint64 kMaxMarkBytes = 4096;
constexpr qsizetype kMaxComparedBytes = 1 << 20;

/// There is no limit on what may be copied but the machine: half of its memory.
qint64 halfOfMemory()
{
    const qint64 pages = sysconf(_SC_PHYS_PAGES);
    const qint64 pageSize = sysconf(_SC_PAGESIZE);
    return pages > 0 && pageSize > 0 ? pages / 2 * pageSize : qint64(1) << 30;
}

QList<X11Atom> atomsIn(const QByteArray &data)
{
    QList<X11Atom> atoms(data.size() / qsizetype(sizeof(X11Atom)));
    std::memcpy(atoms.data(), data.constData(), std::size_t(atoms.size()) * sizeof(X11Atom));
    return atoms;
}

/// 0 for what is large: nobody repeats that so often that it matters.
std::size_t fingerprintOf(const X11SelectionReader::Copy &copy)
{
    const QByteArray text = copy.snapshot.string.value_or(Utf8Text()).utf8();
    const QByteArray html = copy.snapshot.html.value_or(QByteArray());
    const QByteArray rtf = copy.snapshot.rtf.value_or(QByteArray());
    if (text.size() + html.size() + rtf.size() + copy.picture.size() > kMaxComparedBytes)
        return 0;
    return qHashMulti(1, copy.snapshot.types, text, html, rtf, copy.picture,
                      copy.snapshot.fileUrls.value_or(QList<QUrl>()));
}

/// Whether it says anything but "secret", in whatever spelling: some programs count the zero that
/// ends their string.
bool isHarmlessMark(const QByteArray &mark)
{
    QByteArray word;
    for (const char byte : mark) {
        if (byte > ' ')
            word += byte;
    }
    return !word.isEmpty() && word.compare("secret", Qt::CaseInsensitive) != 0;
}

bool isComplete(const X11IncomingTransfer *transfer)
{
    return transfer != nullptr && transfer->state() == X11IncomingTransfer::State::Complete;
}

} // namespace

X11SelectionReader::X11SelectionReader(X11SelectionConnection &connection)
    : m_connection(connection)
    , m_byteLimit(halfOfMemory())
{
}

X11SelectionReader::~X11SelectionReader() = default;

bool X11SelectionReader::start(const X11Event::OwnerChanged &event, TimePoint now)
{
    m_pace.noteTaken(m_connection.clientOf(event.owner), isReading(), now);
    m_ownedSince = event.ownedSince;
    if (!m_pace.isRestless()) {
        begin(now);
        return true;
    }
    if (m_stage != Stage::Pause || m_pace.isLastPause())
        pause(now);
    return false;
}

void X11SelectionReader::begin(TimePoint now)
{
    abandonTransfers();
    m_startedAt = now;
    m_lastProgress = now;
    m_nudgesLeft = kMaxNudges;
    m_stage = Stage::Offer;
    addWish({}, {u"TARGETS"_s});
}

void X11SelectionReader::pause(TimePoint now)
{
    abandonTransfers();
    const auto length = m_pace.pause();
    m_stage = length ? Stage::Pause : Stage::Idle;
    m_pauseEnd = now + length.value_or(0ms);
}

void X11SelectionReader::ownerEnded()
{
    if (m_stage == Stage::Contents)
        finish();
    else
        cancel();
}

void X11SelectionReader::cancel()
{
    abandonTransfers();
    m_stage = Stage::Idle;
}

bool X11SelectionReader::handle(const X11Event::ConversionAnswered &event, TimePoint now)
{
    if (isAbandoned(event.requestor)) {
        if (event.property != 0)
            m_connection.deleteProperty(event.requestor, event.property);
        return true;
    }
    return dispatch(event, now);
}

bool X11SelectionReader::handle(const X11Event::PropertyChanged &event, TimePoint now)
{
    if (isAbandoned(event.window)) {
        if (!event.isDeleted)
            m_connection.deleteProperty(event.window, event.property);
        return true;
    }
    return dispatch(event, now);
}

bool X11SelectionReader::isAbandoned(X11Window window) const
{
    return std::any_of(m_abandoned.begin(), m_abandoned.end(),
                       [window](const AbandonedWindow &each) { return each.window == window; });
}

template <typename Event>
bool X11SelectionReader::dispatch(const Event &event, TimePoint now)
{
    for (const Wish &wish : m_wishes) {
        const auto before = std::pair(wish.transfer->state(), wish.transfer->receivedBytes());
        if (!wish.transfer->handle(event))
            continue;
        if (before != std::pair(wish.transfer->state(), wish.transfer->receivedBytes()))
            m_lastProgress = now;
        if (!wish.transfer->isPending())
            advance();
        return true;
    }
    return false;
}

/// One of the transfers has come to its end.
void X11SelectionReader::advance()
{
    for (Wish &wish : m_wishes) {
        if (!isAnswered(wish) && !wish.transfer->isPending() && tryNextTarget(wish))
            return;
    }
    const auto isOpen = [](const Wish &wish) { return wish.transfer->isPending(); };
    if (std::any_of(m_wishes.begin(), m_wishes.end(), isOpen))
        return;

    switch (m_stage) {
    case Stage::Offer: {
        const auto offer = std::move(m_wishes.front().transfer);
        m_wishes.clear();
        readOffer(*offer);
        break;
    }
    case Stage::Mark: {
        const auto mark = std::move(m_wishes.front().transfer);
        m_wishes.clear();
        readMark(*mark);
        break;
    }
    case Stage::Contents:
        if (isPictureMissing())
            askForPicture();
        else
            finish();
        break;
    case Stage::Idle:
    case Stage::Pause: break;
    }
}

void X11SelectionReader::readOffer(const X11IncomingTransfer &offer)
{
    QStringList targets;
    m_isOfferKnown = isComplete(&offer) && offer.result().format == 32;
    if (m_isOfferKnown) {
        const QList<X11Atom> atoms = atomsIn(offer.result().data);
        targets = m_connection.atomNames(atoms.first(std::min(atoms.size(), kMaxOfferedTargets)));
        if (atoms.contains(m_connection.atom(MimeTypes::kPasswordManagerHint)))
            targets.append(MimeTypes::kPasswordManagerHint.toString());
    } else {
        // A program that knows nothing of TARGETS may yet know of text, or of secrets.
        targets = {u"UTF8_STRING"_s, u"STRING"_s, MimeTypes::kPasswordManagerHint.toString()};
    }
    m_plan = SelectionPlan::fromTargets(targets);
    if (!m_plan.isMarkedByPasswordManager)
        return askForContents();
    m_stage = Stage::Mark;
    addWish({}, {MimeTypes::kPasswordManagerHint.toString()});
}

/// A mark that cannot be read is taken for the worst.
void X11SelectionReader::readMark(const X11IncomingTransfer &mark)
{
    const bool isHarmless = isComplete(&mark) && mark.result().format == 8 &&
                            mark.result().data.size() <= kMaxMarkBytes &&
                            isHarmlessMark(mark.result().data);
    const bool isMissing = !m_isOfferKnown && !isComplete(&mark);
    if (isHarmless || isMissing)
        return askForContents();
    m_plan = {};
    finish();
}

void X11SelectionReader::askForContents()
{
    m_stage = Stage::Contents;
    addWish(PasteboardType::kString, m_plan.textTargets);
    addWish(PasteboardType::kHtml, m_plan.htmlTargets);
    addWish(PasteboardType::kRtf, m_plan.rtfTargets);
    addWish(PasteboardType::kFileUrl, m_plan.fileTargets);
    if (m_plan.textTargets.isEmpty())
        askForPicture();
    if (m_wishes.empty())
        finish();
}

void X11SelectionReader::askForPicture()
{
    addWish(PasteboardType::kImage, std::exchange(m_plan.pictureTargets, {}));
}

/// A picture beside a text, even a blank one, is not wanted; but the text may have failed.
bool X11SelectionReader::isPictureMissing() const
{
    return !m_plan.pictureTargets.isEmpty() &&
           std::none_of(m_wishes.begin(), m_wishes.end(), [this](const Wish &wish) {
               return wish.type == PasteboardType::kString && isAnswered(wish);
           });
}

void X11SelectionReader::addWish(QStringView type, const QStringList &targets)
{
    if (targets.isEmpty())
        return;
    m_wishes.push_back({type, targets, {}, nullptr});
    tryNextTarget(m_wishes.back());
}

bool X11SelectionReader::tryNextTarget(Wish &wish)
{
    if (wish.targets.isEmpty())
        return false;
    wish.target = wish.targets.takeFirst();
    wish.transfer = ask(wish.target);
    return true;
}

std::unique_ptr<X11IncomingTransfer> X11SelectionReader::ask(QStringView target)
{
    // With the time of this owner, a newer one that comes in between can refuse.
    return std::make_unique<X11IncomingTransfer>(m_connection, m_connection.atom(u"CLIPBOARD"),
                                                 m_connection.atom(target), m_ownedSince,
                                                 m_byteLimit - receivedBytes());
}

/// Whether the owner answered with something of the kind that was asked for.
bool X11SelectionReader::isAnswered(const Wish &wish) const
{
    if (!isComplete(wish.transfer.get()))
        return false;
    if (wish.type.isEmpty())
        return true;
    const X11Property &result = wish.transfer->result();
    if (result.format != 8 || wish.type != PasteboardType::kString)
        return result.format == 8;
    const QString type = typeName(result);
    return type == "UTF8_STRING"_L1 || type == "STRING"_L1 || type == "TEXT"_L1 ||
           type.startsWith("text/plain"_L1, Qt::CaseInsensitive);
}

void X11SelectionReader::finish()
{
    Copy copy = makeCopy();
    const bool isWorthTelling = m_isOfferKnown || copy.snapshot.string;
    m_pace.noteGiven(fingerprintOf(copy));
    cancel();
    if (onRead && isWorthTelling)
        onRead(std::move(copy));
}

X11SelectionReader::Copy X11SelectionReader::makeCopy() const
{
    Copy copy;
    copy.snapshot.types = m_plan.types;
    for (const Wish &wish : m_wishes) {
        if (!isAnswered(wish))
            continue;
        const QByteArray &data = wish.transfer->result().data;
        if (wish.type == PasteboardType::kString)
            copy.snapshot.string = textOf(wish.transfer->result());
        else if (wish.type == PasteboardType::kHtml)
            copy.snapshot.html = data;
        else if (wish.type == PasteboardType::kRtf)
            copy.snapshot.rtf = data;
        else if (wish.type == PasteboardType::kFileUrl)
            copy.snapshot.fileUrls = UriList::parse(data);
        else if (wish.type == PasteboardType::kImage) {
            copy.picture = data;
            copy.pictureTarget = wish.target;
        }
    }
    return copy;
}

QString X11SelectionReader::typeName(const X11Property &property) const
{
    return m_connection.atomNames({property.type}).first();
}

/// STRING means Latin-1, but many programs put UTF-8 there, and in a text/plain without a character
/// set anything; what is valid UTF-8 is not so by chance.
Utf8Text X11SelectionReader::textOf(const X11Property &property) const
{
    const QString type = typeName(property);
    const bool isLooselyNamed = type == "STRING"_L1 || type == "text/plain"_L1;
    if (isLooselyNamed && !property.data.isValidUtf8())
        return Utf8Text(QString::fromLatin1(property.data));
    return Utf8Text::fromUtf8(property.data);
}

qint64 X11SelectionReader::receivedBytes() const
{
    qint64 byteCount = 0;
    for (const Wish &wish : m_wishes) {
        if (wish.transfer)
            byteCount += wish.transfer->receivedBytes();
    }
    return byteCount;
}

std::optional<X11SelectionReader::TimePoint> X11SelectionReader::deadline() const
{
    std::optional<TimePoint> earliest;
    if (m_stage != Stage::Idle)
        earliest = readingDeadline();
    if (const auto nudge = nudgeTime())
        earliest = std::min(*earliest, *nudge);
    if (!m_abandoned.empty() && (!earliest || m_abandoned.front().end < *earliest))
        earliest = m_abandoned.front().end;
    return earliest;
}

X11SelectionReader::TimePoint X11SelectionReader::readingDeadline() const
{
    if (m_stage == Stage::Pause)
        return m_pauseEnd;
    const auto bonus = std::chrono::seconds(receivedBytes() / kSlowestBytesPerSecond);
    return std::min<TimePoint>(m_lastProgress + kSilence, m_startedAt + kPatience + bonus);
}

/// Absent if that was done often enough, or there is nobody to be woken.
std::optional<X11SelectionReader::TimePoint> X11SelectionReader::nudgeTime() const
{
    if (!isReading() || m_nudgesLeft == 0)
        return std::nullopt;
    return std::max(m_lastProgress, m_lastNudge) + kNudgeAfter;
}

/// The answer is thrown away, like that of a transfer given up.
void X11SelectionReader::nudgeOwner(TimePoint now)
{
    --m_nudgesLeft;
    m_lastNudge = now;
    m_abandoned.push_back({ask(u"TARGETS")->releaseWindow(), now + kAbandonedLife});
}

void X11SelectionReader::expire(TimePoint now)
{
    while (!m_abandoned.empty() && m_abandoned.front().end <= now) {
        m_connection.destroyWindow(m_abandoned.front().window);
        m_abandoned.erase(m_abandoned.begin());
    }
    if (m_stage == Stage::Idle)
        return;
    if (nudgeTime() && *nudgeTime() <= now)
        nudgeOwner(now);
    if (now < readingDeadline())
        return;
    if (m_stage == Stage::Pause)
        return begin(now);
    if (m_stage == Stage::Mark) {
        m_plan = {};
        finish();
    } else {
        ownerEnded();
    }
}

void X11SelectionReader::abandonTransfers()
{
    for (Wish &wish : m_wishes) {
        if (wish.transfer && wish.transfer->isPending())
            m_abandoned.push_back(
                {wish.transfer->releaseWindow(), m_lastProgress + kAbandonedLife});
    }
    m_wishes.clear();
    while (m_abandoned.size() > kMaxAbandoned) {
        m_connection.destroyWindow(m_abandoned.front().window);
        m_abandoned.erase(m_abandoned.begin());
    }
}
