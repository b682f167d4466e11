// Drops files on a window the way a file manager does on X11: the XDND protocol (version 5)
// from a client of its own, offering the files as text/uri-list. xdotool cannot drag between
// programs, and a Qt drag driven by synthetic pointer events hands over no data at the drop.
//   xdnd_drop WINDOW X Y FILE...    WINDOW the target's client window, X Y a point of the
//                                   screen inside it; prints "accepted" or "refused".
// Exit status 0 when the drop was accepted, 1 when refused, 2 on a usage or X error.
#include <xcb/xcb.h>

#include <cctype>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>

namespace {

xcb_connection_t* c = nullptr;

xcb_atom_t atom(const char* name) {
    xcb_intern_atom_reply_t* r =
        xcb_intern_atom_reply(c, xcb_intern_atom(c, 0, uint16_t(std::strlen(name)), name), nullptr);
    const xcb_atom_t a = r ? r->atom : xcb_atom_t(XCB_ATOM_NONE);
    std::free(r);
    return a;
}

// A file name's bytes as a file: URI, every byte outside the unreserved set escaped.
std::string fileUri(const char* path) {
    std::string uri = "file://";
    char buf[4];
    for (const unsigned char* p = reinterpret_cast<const unsigned char*>(path); *p; ++p) {
        if (std::isalnum(*p) || std::strchr("/-._~", *p)) {
            uri += char(*p);
        } else {
            std::snprintf(buf, sizeof buf, "%%%02X", *p);
            uri += buf;
        }
    }
    return uri;
}

void sendMessage(xcb_window_t to, xcb_atom_t type, const uint32_t (&data)[5]) {
    xcb_client_message_event_t ev{};
    ev.response_type = XCB_CLIENT_MESSAGE;
    ev.format = 32;
    ev.window = to;
    ev.type = type;
    std::memcpy(ev.data.data32, data, sizeof data);
    xcb_send_event(c, 0, to, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&ev));
    xcb_flush(c);
}

// A window of our own, unseen, that hears its property changes.
xcb_window_t ownWindow() {
    xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(c)).data;
    const xcb_window_t w = xcb_generate_id(c);
    const uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(c, XCB_COPY_FROM_PARENT, w, screen->root, -10, -10, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &mask);
    return w;
}

using Deadline = std::chrono::steady_clock::time_point;

Deadline secondsFromNow(int seconds) {
    return std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
}

// The next event, or none once `deadline` has passed or the connection broke.
xcb_generic_event_t* nextEvent(Deadline deadline) {
    while (std::chrono::steady_clock::now() < deadline) {
        if (xcb_generic_event_t* ev = xcb_poll_for_event(c)) return ev;
        if (xcb_connection_has_error(c)) return nullptr;
        struct timespec pause {
            0, 10'000'000
        };
        nanosleep(&pause, nullptr);
    }
    return nullptr;
}

int drop(int argc, char** argv) {
    const xcb_window_t target = xcb_window_t(std::strtoul(argv[0], nullptr, 0));
    const int x = std::atoi(argv[1]), y = std::atoi(argv[2]);
    std::string list;
    for (int i = 3; i < argc; ++i) list += fileUri(argv[i]) + "\r\n";

    const xcb_window_t source = ownWindow();
    const xcb_atom_t selection = atom("XdndSelection"), uriList = atom("text/uri-list"),
                     copy = atom("XdndActionCopy"), stamp = atom("XDND_DROP_STAMP");

    // A timestamp of the server's, from a property change of our own, to own the selection
    // with and to date the drop, as a drag begun by a button press would.
    xcb_change_property(c, XCB_PROP_MODE_APPEND, source, stamp, XCB_ATOM_STRING, 8, 0, nullptr);
    xcb_flush(c);
    const Deadline soon = secondsFromNow(10);
    xcb_generic_event_t* stamped = nullptr;
    while ((stamped = nextEvent(soon)) && (stamped->response_type & 0x7f) != XCB_PROPERTY_NOTIFY)
        std::free(stamped);
    if (!stamped) return 2;
    const xcb_timestamp_t now = reinterpret_cast<xcb_property_notify_event_t*>(stamped)->time;
    std::free(stamped);
    xcb_set_selection_owner(c, source, selection, now);

    enum { Entering, Dropped } stage = Entering;
    sendMessage(target, atom("XdndEnter"), {source, 5u << 24, uriList, 0, 0});
    sendMessage(target, atom("XdndPosition"),
                {source, 0, uint32_t(x) << 16 | uint32_t(y & 0xffff), now, copy});

    const xcb_atom_t status = atom("XdndStatus"), finished = atom("XdndFinished");
    const Deadline deadline = secondsFromNow(30);
    int result = 2;
    while (result == 2) {
        xcb_generic_event_t* ev = nextEvent(deadline);
        if (!ev) break;
        const int kind = ev->response_type & 0x7f;
        if (kind == XCB_CLIENT_MESSAGE) {
            auto* m = reinterpret_cast<xcb_client_message_event_t*>(ev);
            if (m->type == status && stage == Entering) {
                if (m->data.data32[1] & 1) {
                    sendMessage(target, atom("XdndDrop"), {source, 0, now, 0, 0});
                    stage = Dropped;
                } else {
                    sendMessage(target, atom("XdndLeave"), {source, 0, 0, 0, 0});
                    result = 1;
                }
            } else if (m->type == finished && stage == Dropped) {
                // Version 5: bit 0 of the second word tells whether the drop was taken.
                result = (m->data.data32[1] & 1) ? 0 : 1;
            }
        } else if (kind == XCB_SELECTION_REQUEST) {
            auto* r = reinterpret_cast<xcb_selection_request_event_t*>(ev);
            xcb_selection_notify_event_t n{};
            n.response_type = XCB_SELECTION_NOTIFY;
            n.time = r->time;
            n.requestor = r->requestor;
            n.selection = r->selection;
            n.target = r->target;
            n.property = XCB_ATOM_NONE;
            if (r->target == uriList && r->property != XCB_ATOM_NONE) {
                xcb_change_property(c, XCB_PROP_MODE_REPLACE, r->requestor, r->property, uriList, 8,
                                    uint32_t(list.size()), list.data());
                n.property = r->property;
            }
            xcb_send_event(c, 0, r->requestor, XCB_EVENT_MASK_NO_EVENT,
                           reinterpret_cast<const char*>(&n));
            xcb_flush(c);
        }
        std::free(ev);
    }
    std::printf("%s\n", result == 0 ? "accepted" : result == 1 ? "refused" : "no answer");
    return result;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 5) {
        std::fprintf(stderr, "usage: xdnd_drop WINDOW X Y FILE...\n");
        return 2;
    }
    c = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(c)) {
        std::fprintf(stderr, "xdnd_drop: no X display\n");
        return 2;
    }
    const int result = drop(argc - 1, argv + 1);
    xcb_disconnect(c);
    return result;
}
