#include "platform/x11/X11SelectionServer.h"

#include "platform/linux/MimeTypes.h"
#include "platform/linux/UriList.h"

#include <algorithm>
#include <cstring>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A program that takes no further piece for so long is given up.
constexpr auto kSilence = 10s;
/// Larger data go in pieces of this size: a few round trips for a large text, and neither we nor
/// the server hold a second copy of it.
constexpr qint64 kPieceBytes = 1 << 20;
constexpr std::size_t kMaxTransfers = 256;
constexpr qsizetype kMaxPairs = 256;

/// Whether \a time lies before \a since. The server's clock begins anew every 49 days.
bool isBefore(X11Time time, X11Time since)
{
    return static_cast<qint32>(time - since) < 0;
}

bool isAscii(const QByteArray &utf8)
{
    return std::all_of(utf8.begin(), utf8.end(),
                       [](char byte) { return static_cast<signed char>(byte) >= 0; });
}

/// Whether valid \a utf8 has no character above U+00FF.
bool isLatin1Representable(const QByteArray &utf8)
{
    constexpr unsigned char kLastLatin1Lead = 0xC3;
    return std::all_of(utf8.begin(), utf8.end(), [](char byte) {
        return static_cast<unsigned char>(byte) <= kLastLatin1Lead;
    });
}

QList<QByteArray> fileUrls(const PasteboardContents &contents)
{
    QList<QByteArray> urls;
    for (const PasteboardContents::Entry &entry : contents.entries) {
        if (entry.type == PasteboardType::kFileUrl)
            urls.append(entry.data.bytes());
    }
    return urls;
}

} // namespace

X11SelectionServer::X11SelectionServer(X11SelectionConnection &connection,
                                       PictureEncoder encodePicture)
    : m_connection(connection)
    , m_encodePicture(std::move(encodePicture))
    , m_window(connection.createWindow())
    , m_pieceBytes(std::min(kPieceBytes, connection.maxPropertyBytes()))
{
}

X11SelectionServer::~X11SelectionServer() = default;

void X11SelectionServer::write(const PasteboardContents &contents)
{
    m_pending.push_back({m_connection.atom(u"CLIPBOARD"), contents, {}});
    m_connection.requestTime(m_window, m_connection.atom(u"TESSARINE_TIME"));
}

void X11SelectionServer::alsoOwnPrimary(std::function<void(bool)> onDone)
{
    m_pending.push_back({m_connection.atom(u"PRIMARY"), {}, std::move(onDone)});
    m_connection.requestTime(m_window, m_connection.atom(u"TESSARINE_TIME"));
}

bool X11SelectionServer::handle(const X11Event::PropertyChanged &event, TimePoint now)
{
    if (event.window == m_window) {
        if (event.property != m_connection.atom(u"TESSARINE_TIME") || m_pending.empty())
            return true;
        const PendingOwnership pending = std::move(m_pending.front());
        m_pending.pop_front();
        if (pending.selection == m_connection.atom(u"PRIMARY"))
            pending.onDone(takePrimary(event.time));
        else
            takeClipboard(pending.contents, event.time);
        return true;
    }

    if (!event.isDeleted)
        return false;
    // The program has read its piece and wants the next.
    const auto transfer = std::find_if(
        m_transfers.begin(), m_transfers.end(), [&event](const OutgoingTransfer &each) {
            return each.requestor == event.window && each.property == event.property;
        });
    if (transfer == m_transfers.end())
        return false;
    sendNextPiece(*transfer, now);
    endTransfers([](const OutgoingTransfer &each) { return each.isOver; });
    return true;
}

void X11SelectionServer::takeClipboard(const PasteboardContents &contents, X11Time time)
{
    const X11Atom clipboard = m_connection.atom(u"CLIPBOARD");
    const X11Window wanted = contents.isEmpty() ? 0 : m_window;
    if (m_connection.setOwner(clipboard, wanted, time) != wanted)
        return; // Another program was quicker, and its copy counts.
    m_announcements.push_back({time, contents});
    if (wanted == 0)
        return setOwnership(clipboard, std::nullopt);
    const auto forms = makeForms(contents);
    setOwnership(clipboard, Ownership{clipboard, time, forms});
    beginPng(*forms);
}

bool X11SelectionServer::takePrimary(X11Time time)
{
    const Ownership *clipboard = find(m_connection.atom(u"CLIPBOARD"));
    if (clipboard == nullptr)
        return false;
    const auto forms = clipboard->forms;
    const X11Atom primary = m_connection.atom(u"PRIMARY");
    if (m_connection.setOwner(primary, m_window, time) != m_window)
        return false;
    setOwnership(primary, Ownership{primary, time, forms});
    return true;
}

void X11SelectionServer::takeOver(const PasteboardContents &contents, X11Time since)
{
    const X11Atom clipboard = m_connection.atom(u"CLIPBOARD");
    if (!m_connection.takeOwnerless(clipboard, m_window, since))
        return; // Another program was quicker, and its copy counts.
    setOwnership(clipboard, Ownership{clipboard, since, makeForms(contents)});
}

std::optional<PasteboardContents>
X11SelectionServer::takeWritten(const X11Event::OwnerChanged &notice)
{
    while (!m_announcements.empty()) {
        Announcement &first = m_announcements.front();
        const X11Window owner = first.contents.isEmpty() ? 0 : m_window;
        if (first.since == notice.ownedSince && owner == notice.owner) {
            PasteboardContents contents = std::move(first.contents);
            m_announcements.pop_front();
            return contents;
        }
        if (!isBefore(first.since, notice.ownedSince))
            return std::nullopt;
        m_announcements.pop_front(); // Overtaken: its notice will not come any more.
    }
    return std::nullopt;
}

std::shared_ptr<const std::vector<X11SelectionServer::Form>>
X11SelectionServer::makeForms(const PasteboardContents &contents)
{
    auto forms = std::make_shared<std::vector<Form>>();
    bool hasFiles = false;
    for (const PasteboardContents::Entry &entry : contents.entries) {
        // The first file stands for all of them.
        const bool isFile = entry.type == PasteboardType::kFileUrl;
        if (!isFile || !std::exchange(hasFiles, true))
            addForms(*forms, contents, entry);
    }
    for (const PasteboardContents::Entry &entry : contents.entries)
        addPng(*forms, entry);
    return forms;
}

void X11SelectionServer::addForms(std::vector<Form> &forms, const PasteboardContents &contents,
                                  const PasteboardContents::Entry &entry)
{
    const bool isFile = entry.type == PasteboardType::kFileUrl;
    if (entry.isToBeConverted) {
        addLazyForm(forms, u"image/tiff", PictureFormat::Tiff, entry.data);
        return;
    }
    for (const QString &target : MimeTypes::targetsToOffer(entry.type)) {
        if (target == MimeTypes::kUriList)
            addForm(forms, target, target, UriList::fromUrls(fileUrls(contents)));
        else if (isFile)
            addForm(forms, target, target, UriList::gnomeCopiedFiles(fileUrls(contents)));
        else if (target == MimeTypes::kMozillaUrl)
            addForm(forms, target, target, UriList::mozillaUrl(entry.data.bytes()));
        else if (target != "STRING"_L1)
            addForm(forms, target, target, entry.data);
    }
    if (entry.type != PasteboardType::kString)
        return;
    addForm(forms, u"TEXT", u"UTF8_STRING", entry.data);
    const QByteArray text = entry.data.bytes();
    if (isAscii(text))
        addForm(forms, u"STRING", u"STRING", entry.data);
    else if (isLatin1Representable(text))
        addForm(forms, u"STRING", u"STRING", QString::fromUtf8(text).toLatin1());
}

/// False if there is a form for \a target already.
bool X11SelectionServer::addForm(std::vector<Form> &forms, QStringView target, QStringView type,
                                 const LazyBytes &data)
{
    const X11Atom atom = m_connection.atom(target);
    const auto isThere = [atom](const Form &form) { return form.target == atom; };
    if (std::any_of(forms.begin(), forms.end(), isThere))
        return false;
    forms.push_back({atom, m_connection.atom(type), data, nullptr});
    return true;
}

void X11SelectionServer::addLazyForm(std::vector<Form> &forms, QStringView target,
                                     PictureFormat format, const LazyBytes &source)
{
    if (!addForm(forms, target, target, {}))
        return;
    forms.back().picture = std::make_shared<LazyPicture>();
    forms.back().picture->format = format;
    forms.back().picture->source = source;
}

/// Many programs paste no picture but a PNG.
void X11SelectionServer::addPng(std::vector<Form> &forms, const PasteboardContents::Entry &entry)
{
    const bool isOtherPicture = entry.type == PasteboardType::kTiff ||
                                entry.type == PasteboardType::kJpeg ||
                                entry.type.startsWith("image/"_L1);
    if (isOtherPicture)
        addLazyForm(forms, u"image/png", PictureFormat::Png, entry.data);
}

X11SelectionServer::Ownership *X11SelectionServer::find(X11Atom selection)
{
    for (Ownership &ownership : m_ownerships) {
        if (ownership.selection == selection)
            return &ownership;
    }
    return nullptr;
}

void X11SelectionServer::setOwnership(X11Atom selection, std::optional<Ownership> ownership)
{
    std::erase_if(m_ownerships,
                  [selection](const Ownership &each) { return each.selection == selection; });
    if (ownership)
        m_ownerships.push_back(*std::move(ownership));
    answerWaiting(); // What they wait for may never come now.
}

void X11SelectionServer::handle(const X11Event::OwnershipLost &event)
{
    // The message may be older than our latest taking; the server knows.
    if (find(event.selection) != nullptr && m_connection.owner(event.selection) != m_window)
        setOwnership(event.selection, std::nullopt);
}

void X11SelectionServer::handle(const X11Event::ConversionRequested &request, TimePoint now)
{
    // Programs of an older time leave the property to us; the target's name is the custom.
    const X11Atom property = request.property != 0 ? request.property : request.target;
    const Ownership *ownership = find(request.selection);
    // Nobody but a program that means harm names a window of ours, which is watched in its own way.
    const bool isOurs = ownership != nullptr && !m_connection.isOwnWindow(request.requestor) &&
                        (request.time == 0 || !isBefore(request.time, ownership->since));
    if (isOurs && hasToWait(*ownership, request))
        return;
    const bool isMultiple = request.target == m_connection.atom(u"MULTIPLE");
    bool isDone = false;
    if (isOurs && isMultiple)
        isDone = convertMultiple(*ownership, request.requestor, request.property, now);
    else if (isOurs)
        isDone = convert(*ownership, request.requestor, request.target, property, now);
    m_connection.answer(request, isDone ? property : 0);
}

/// Puts what \a target asks for into the property. False if we have no such thing.
bool X11SelectionServer::convert(const Ownership &ownership, X11Window requestor, X11Atom target,
                                 X11Atom property, TimePoint now)
{
    if (target == m_connection.atom(u"TARGETS")) {
        offerTargets(ownership, requestor, property);
        return true;
    }
    if (target == m_connection.atom(u"TIMESTAMP")) {
        m_connection.setProperty(requestor, property, m_connection.atom(u"INTEGER"),
                                 QList<quint32>{ownership.since});
        return true;
    }
    const Form *form = findForm(ownership, target);
    return form != nullptr && send(requestor, property, *form, now);
}

const X11SelectionServer::Form *X11SelectionServer::findForm(const Ownership &ownership,
                                                             X11Atom target) const
{
    const auto form = std::find_if(ownership.forms->begin(), ownership.forms->end(),
                                   [target](const Form &each) { return each.target == target; });
    return form == ownership.forms->end() ? nullptr : &*form;
}

/// True if the request will be answered when its pictures are made.
bool X11SelectionServer::hasToWait(const Ownership &ownership,
                                   const X11Event::ConversionRequested &request)
{
    if (m_waiting.size() >= kMaxTransfers)
        return false;
    bool isPictureWanted = false;
    for (const Form &form : *ownership.forms) {
        if (!form.isUnmade() || !isWanted(form.target, request))
            continue;
        begin(form.picture);
        isPictureWanted = true;
    }
    if (isPictureWanted)
        m_waiting.push_back(request);
    return isPictureWanted;
}

/// Whether \a target is what was asked for, or part of it.
bool X11SelectionServer::isWanted(X11Atom target, const X11Event::ConversionRequested &request)
{
    if (request.target != m_connection.atom(u"MULTIPLE"))
        return request.target == target;
    const Pairs pairs = readPairs(request.requestor, request.property).value_or(Pairs());
    for (qsizetype index = 0; index + 1 < pairs.atoms.size(); index += 2) {
        if (pairs.atoms.at(index) == target)
            return true;
    }
    return false;
}

/// We write what is about to be pasted, most likely as a PNG, and a large one takes its time.
void X11SelectionServer::beginPng(const std::vector<Form> &forms)
{
    for (const Form &form : forms) {
        if (form.picture && form.picture->format == PictureFormat::Png)
            begin(form.picture);
    }
}

void X11SelectionServer::begin(const std::shared_ptr<LazyPicture> &picture)
{
    if (picture->state != LazyPicture::State::NotBegun)
        return;
    picture->state = LazyPicture::State::UnderWay;
    const std::weak_ptr offered = picture;
    m_encodePicture(
        picture->source, picture->format, [offered] { return !offered.expired(); },
        [this, offered](std::optional<QByteArray> file) {
            const std::shared_ptr<LazyPicture> made = offered.lock();
            if (!made)
                return;
            made->state = LazyPicture::State::Done;
            made->data = std::move(file).value_or(QByteArray());
            made->source = {};
            answerWaiting();
        });
}

/// Those that have to wait for another picture go on waiting.
void X11SelectionServer::answerWaiting()
{
    for (const auto &request : std::exchange(m_waiting, {}))
        handle(request, std::chrono::steady_clock::now());
}

void X11SelectionServer::offerTargets(const Ownership &ownership, X11Window requestor,
                                      X11Atom property)
{
    QList<X11Atom> targets = m_connection.atoms({u"TARGETS"_s, u"TIMESTAMP"_s, u"MULTIPLE"_s});
    for (const Form &form : *ownership.forms) {
        if (!form.picture || !form.picture->hasFailed())
            targets.append(form.target);
    }
    m_connection.setProperty(requestor, property, m_connection.atom(u"ATOM"), targets);
}

std::optional<X11SelectionServer::Pairs> X11SelectionServer::readPairs(X11Window requestor,
                                                                       X11Atom property)
{
    if (property == 0)
        return std::nullopt;
    const X11Property request =
        m_connection.readProperty(requestor, property, kMaxPairs * 2 * qsizetype(sizeof(X11Atom)));
    if (request.format != 32 || request.isCut)
        return std::nullopt;
    Pairs pairs = {request.type, {}};
    pairs.atoms.resize(request.data.size() / qsizetype(sizeof(X11Atom)));
    std::memcpy(pairs.atoms.data(), request.data.constData(),
                std::size_t(pairs.atoms.size()) * sizeof(X11Atom));
    return pairs;
}

/// Those of the pairs that fail are marked in the property.
bool X11SelectionServer::convertMultiple(const Ownership &ownership, X11Window requestor,
                                         X11Atom property, TimePoint now)
{
    std::optional<Pairs> pairs = readPairs(requestor, property);
    if (!pairs)
        return false;
    const X11Atom multiple = m_connection.atom(u"MULTIPLE");
    QList<X11Atom> &atoms = pairs->atoms;
    for (qsizetype index = 0; index + 1 < atoms.size(); index += 2) {
        X11Atom &pairProperty = atoms[index + 1];
        const bool isAllowed = atoms.at(index) != multiple && pairProperty != 0;
        if (!isAllowed || !convert(ownership, requestor, atoms.at(index), pairProperty, now))
            pairProperty = 0;
    }
    m_connection.setProperty(requestor, property, pairs->type, atoms);
    return true;
}

/// Small data go at once; for large ones the requestor is told to expect pieces.
bool X11SelectionServer::send(X11Window requestor, X11Atom property, const Form &form,
                              TimePoint now)
{
    // A new request for the same place replaces an old one.
    endTransfers([=](const OutgoingTransfer &each) {
        return each.requestor == requestor && each.property == property;
    });
    if (form.picture && form.picture->data.isEmpty())
        return false;
    const auto data = form.picture ? form.picture->data : form.data.read();
    if (!data)
        return false;
    if (data->size() <= m_pieceBytes) {
        m_connection.setProperty(requestor, property, form.type, *data);
        return true;
    }
    if (m_transfers.size() >= kMaxTransfers)
        return false;
    m_connection.watch(requestor);
    m_connection.setProperty(
        requestor, property, m_connection.atom(u"INCR"),
        QList<quint32>{static_cast<quint32>(std::min<qsizetype>(data->size(), 0x7fffffff))});
    m_transfers.push_back({requestor, property, form.type, *data, 0, now});
    return true;
}

/// After the last byte an empty piece tells the end.
void X11SelectionServer::sendNextPiece(OutgoingTransfer &transfer, TimePoint now)
{
    const qsizetype length =
        std::min<qsizetype>(m_pieceBytes, transfer.data.size() - transfer.offset);
    m_connection.setProperty(transfer.requestor, transfer.property, transfer.type,
                             QByteArrayView(transfer.data).sliced(transfer.offset, length));
    transfer.offset += length;
    transfer.isOver = length == 0;
    transfer.lastProgress = now;
}

void X11SelectionServer::handle(const X11Event::WindowDestroyed &event)
{
    endTransfers(
        [&event](const OutgoingTransfer &transfer) { return transfer.requestor == event.window; });
}

/// A window is watched as long as one transfer goes to it.
template <typename Predicate>
void X11SelectionServer::endTransfers(Predicate isOver)
{
    std::vector<X11Window> ended;
    for (const OutgoingTransfer &transfer : m_transfers) {
        if (isOver(transfer))
            ended.push_back(transfer.requestor);
    }
    std::erase_if(m_transfers, isOver);
    for (const X11Window window : ended) {
        const auto goesThere = [window](const OutgoingTransfer &transfer) {
            return transfer.requestor == window;
        };
        if (std::none_of(m_transfers.begin(), m_transfers.end(), goesThere))
            m_connection.unwatch(window);
    }
}

std::optional<X11SelectionServer::TimePoint> X11SelectionServer::deadline() const
{
    std::optional<TimePoint> earliest;
    for (const OutgoingTransfer &transfer : m_transfers) {
        const TimePoint end = transfer.lastProgress + kSilence;
        if (!earliest || end < *earliest)
            earliest = end;
    }
    return earliest;
}

void X11SelectionServer::expire(TimePoint now)
{
    if (m_transfers.empty())
        return;
    endTransfers([now](const OutgoingTransfer &transfer) {
        return transfer.lastProgress + kSilence <= now;
    });
}
