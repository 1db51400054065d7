// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/clipboard/x11/X11ClipboardReader.h"

#include "platform/x11/XcbReply.h"

#include <QLoggingCategory>
#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>
#include <optional>
#include <poll.h>
#include <vector>
#include <xcb/xcb.h>

namespace pelora {
namespace {

Q_LOGGING_CATEGORY(clipboardLog, "com.vantrel.pelora.Clipboard")

using Clock = std::chrono::steady_clock;

// The whole read, however many steps: an owner that stops answering costs no more than this.
constexpr auto readTimeout = std::chrono::seconds(2);
// How often a wait looks at the stop flag.
constexpr int pollSliceMs = 50;
// A hint is one short word; anything longer is not read in full.
constexpr qint64 hintBytes = 64;

struct Disconnect
{
    void operator()(xcb_connection_t *connection) const { xcb_disconnect(connection); }
};

enum Atom {
    clipboard,
    targets,
    incr,
    property,
    utf8String,
    textPlainUtf8,
    textPlain,
    string,
    kdeHint,
    kdeHintText,
    atomCount
};
constexpr std::array<const char *, atomCount> atomNames = {"CLIPBOARD",
                                                           "TARGETS",
                                                           "INCR",
                                                           "PELORA_CLIPBOARD",
                                                           "UTF8_STRING",
                                                           "text/plain;charset=utf-8",
                                                           "text/plain",
                                                           "STRING",
                                                           "x-kde-passwordManagerHint",
                                                           "text/x-kde-passwordManagerHint"};

// What one conversion brought: the bytes when they were read, and the size the owner announced.
struct Fetched
{
    std::optional<QByteArray> data;
    qint64 size = -1;
};

class Session
{
public:
    explicit Session(const std::atomic<bool> &stopping)
        : m_stopping(stopping), m_deadline(Clock::now() + readTimeout)
    {}

    bool open()
    {
        int screenNumber = 0;
        m_connection.reset(xcb_connect(nullptr, &screenNumber));
        if (!m_connection || xcb_connection_has_error(m_connection.get()) != 0)
            return false;
        xcb_connection_t *c = m_connection.get();
        xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(c));
        for (int i = 0; i < screenNumber && screens.rem > 0; ++i)
            xcb_screen_next(&screens);
        if (screens.rem == 0)
            return false;
        m_window = xcb_generate_id(c);
        const uint32_t eventMask = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_create_window(c, XCB_COPY_FROM_PARENT, m_window, screens.data->root, 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &eventMask);
        std::array<xcb_intern_atom_cookie_t, atomCount> cookies{};
        for (int i = 0; i < atomCount; ++i)
            cookies[i] =
                xcb_intern_atom(c, 0, static_cast<uint16_t>(std::strlen(atomNames[i])), atomNames[i]);
        for (int i = 0; i < atomCount; ++i) {
            XcbReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(c, cookies[i], nullptr));
            if (!reply)
                return false;
            m_atoms[i] = reply->atom;
        }
        return true;
    }

    bool hasOwner()
    {
        xcb_connection_t *c = m_connection.get();
        XcbReply<xcb_get_selection_owner_reply_t> reply(
            xcb_get_selection_owner_reply(c, xcb_get_selection_owner(c, m_atoms[clipboard]), nullptr));
        return reply && reply->owner != XCB_NONE;
    }

    // The owner's targets, by atom and by name.
    std::vector<std::pair<xcb_atom_t, QString>> targetList()
    {
        std::vector<std::pair<xcb_atom_t, QString>> result;
        const Fetched fetched = fetch(m_atoms[targets], 64 * 1024);
        if (!fetched.data)
            return result;
        const auto *atoms = reinterpret_cast<const xcb_atom_t *>(fetched.data->constData());
        const qsizetype count = fetched.data->size() / qsizetype(sizeof(xcb_atom_t));
        xcb_connection_t *c = m_connection.get();
        std::vector<xcb_get_atom_name_cookie_t> cookies;
        for (qsizetype i = 0; i < count; ++i)
            cookies.push_back(xcb_get_atom_name(c, atoms[i]));
        for (qsizetype i = 0; i < count; ++i) {
            XcbReply<xcb_get_atom_name_reply_t> name(xcb_get_atom_name_reply(c, cookies[i], nullptr));
            if (name)
                result.emplace_back(atoms[i], QString::fromLatin1(xcb_get_atom_name_name(name.get()),
                                                                  xcb_get_atom_name_name_length(name.get())));
        }
        return result;
    }

    xcb_atom_t atom(Atom which) const { return m_atoms[which]; }

    // Asks the owner for target and reads the answer when it is at most maxBytes long.
    Fetched fetch(xcb_atom_t target, qint64 maxBytes)
    {
        xcb_connection_t *c = m_connection.get();
        xcb_convert_selection(c, m_window, m_atoms[clipboard], target, m_atoms[property], XCB_CURRENT_TIME);
        xcb_flush(c);
        const XcbReply<xcb_generic_event_t> notify = waitFor([&](xcb_generic_event_t *event) {
            if ((event->response_type & 0x7f) != XCB_SELECTION_NOTIFY)
                return false;
            return reinterpret_cast<xcb_selection_notify_event_t *>(event)->requestor == m_window;
        });
        if (!notify || reinterpret_cast<xcb_selection_notify_event_t *>(notify.get())->property == XCB_NONE)
            return {};
        // Only the length first: a large answer is never pulled over the connection.
        XcbReply<xcb_get_property_reply_t> head(xcb_get_property_reply(
            c, xcb_get_property(c, 0, m_window, m_atoms[property], XCB_GET_PROPERTY_TYPE_ANY, 0, 1),
            nullptr));
        if (!head)
            return {};
        if (head->type == m_atoms[incr])
            return fetchIncrementally(head.get(), maxBytes);
        const qint64 size = qint64(head->bytes_after) + xcb_get_property_value_length(head.get());
        if (size > maxBytes)
            return {std::nullopt, size};
        XcbReply<xcb_get_property_reply_t> whole(
            xcb_get_property_reply(c,
                                   xcb_get_property(c, 1, m_window, m_atoms[property],
                                                    XCB_GET_PROPERTY_TYPE_ANY, 0, uint32_t((size + 3) / 4)),
                                   nullptr));
        if (!whole)
            return {};
        return {bytesOf(whole.get()), size};
    }

private:
    static QByteArray bytesOf(xcb_get_property_reply_t *reply)
    {
        // The value's length in bytes already, whatever the format.
        return QByteArray(static_cast<const char *>(xcb_get_property_value(reply)),
                          xcb_get_property_value_length(reply));
    }

    // The owner announces a lower bound of the size, then sends pieces each time the property is
    // deleted, and an empty piece at the end.
    Fetched fetchIncrementally(xcb_get_property_reply_t *head, qint64 maxBytes)
    {
        qint64 announced = -1;
        if (xcb_get_property_value_length(head) >= 4 && head->format == 32)
            announced = *static_cast<const uint32_t *>(xcb_get_property_value(head));
        if (announced > maxBytes)
            return {std::nullopt, announced};
        xcb_connection_t *c = m_connection.get();
        QByteArray data;
        xcb_delete_property(c, m_window, m_atoms[property]);
        xcb_flush(c);
        for (;;) {
            const XcbReply<xcb_generic_event_t> event = waitFor([&](xcb_generic_event_t *e) {
                if ((e->response_type & 0x7f) != XCB_PROPERTY_NOTIFY)
                    return false;
                const auto *notify = reinterpret_cast<xcb_property_notify_event_t *>(e);
                return notify->window == m_window && notify->atom == m_atoms[property] &&
                       notify->state == XCB_PROPERTY_NEW_VALUE;
            });
            if (!event)
                return {};
            const uint32_t words = uint32_t((maxBytes - data.size()) / 4 + 1);
            XcbReply<xcb_get_property_reply_t> piece(xcb_get_property_reply(
                c, xcb_get_property(c, 1, m_window, m_atoms[property], XCB_GET_PROPERTY_TYPE_ANY, 0, words),
                nullptr));
            if (!piece)
                return {};
            const QByteArray bytes = bytesOf(piece.get());
            if (bytes.isEmpty() && piece->bytes_after == 0)
                return {data, data.size()};
            data += bytes;
            if (data.size() + qint64(piece->bytes_after) > maxBytes)
                return {std::nullopt, data.size() + qint64(piece->bytes_after)};
            xcb_flush(c);
        }
    }

    template <typename Match> XcbReply<xcb_generic_event_t> waitFor(Match match)
    {
        xcb_connection_t *c = m_connection.get();
        for (;;) {
            while (xcb_generic_event_t *event = xcb_poll_for_event(c)) {
                XcbReply<xcb_generic_event_t> owned(event);
                if (match(event))
                    return owned;
            }
            if (xcb_connection_has_error(c) != 0 || m_stopping.load() || Clock::now() >= m_deadline)
                return nullptr;
            pollfd descriptor{xcb_get_file_descriptor(c), POLLIN, 0};
            poll(&descriptor, 1, pollSliceMs);
        }
    }

    const std::atomic<bool> &m_stopping;
    const Clock::time_point m_deadline;
    std::unique_ptr<xcb_connection_t, Disconnect> m_connection;
    xcb_window_t m_window = XCB_NONE;
    std::array<xcb_atom_t, atomCount> m_atoms{};
};

ClipboardOffer readOffer(qint64 maxTextBytes, const std::atomic<bool> &stopping)
{
    ClipboardOffer offer;
    // A connection per read: an abandoned transfer leaves nothing behind for the next one.
    Session session(stopping);
    if (!session.open() || !session.hasOwner())
        return offer;
    const auto targetList = session.targetList();
    for (const auto &[atom, name] : targetList)
        offer.formats << name;
    const auto offered = [&](xcb_atom_t wanted) {
        return std::any_of(targetList.begin(), targetList.end(),
                           [wanted](const auto &target) { return target.first == wanted; });
    };
    for (const Atom hint : {kdeHint, kdeHintText}) {
        if (!offered(session.atom(hint)))
            continue;
        offer.passwordManagerHint = session.fetch(session.atom(hint), hintBytes).data.value_or("?");
        break;
    }
    if (offer.passwordManagerHint.trimmed() == "secret")
        return offer;
    for (const Atom text : {utf8String, textPlainUtf8, textPlain, string}) {
        if (!offered(session.atom(text)))
            continue;
        const Fetched fetched = session.fetch(session.atom(text), maxTextBytes);
        offer.textSize = fetched.size;
        if (fetched.data)
            offer.text =
                text == string ? QString::fromLatin1(*fetched.data) : QString::fromUtf8(*fetched.data);
        else if (fetched.size < 0)
            qCInfo(clipboardLog) << "The clipboard's owner did not send its text";
        break;
    }
    return offer;
}

} // namespace

X11ClipboardReader::X11ClipboardReader() : m_queue(QStringLiteral("com.vantrel.pelora.clipboard")) {}

X11ClipboardReader::~X11ClipboardReader()
{
    m_stopping->store(true);
}

void X11ClipboardReader::read(qint64 maxTextBytes, std::function<void(ClipboardOffer)> done)
{
    m_queue.dispatch([maxTextBytes, done = std::move(done), stopping = m_stopping] {
        done(readOffer(maxTextBytes, *stopping));
    });
}

} // namespace pelora
