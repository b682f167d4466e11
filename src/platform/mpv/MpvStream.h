#pragma once
// mpv reads a stream of ours through five C callbacks and a cookie. This hands them to an
// object of ours, which mpv owns from the open until it closes the stream.

#include <mpv/client.h>
#include <mpv/stream_cb.h>

#include <memory>

namespace cantovel {

// `Stream` gives read(char*, uint64_t) (bytes read, 0 at the end, -1 on an error),
// seek(int64_t) (the new offset, negative when it cannot), size() and cancel(). Returns 0, the
// open callback's answer of a stream that opened.
template <typename Stream>
int handStreamToMpv(std::unique_ptr<Stream> stream, mpv_stream_cb_info* info) {
    info->cookie = stream.release();
    info->read_fn = [](void* s, char* buf, uint64_t n) -> int64_t {
        return static_cast<Stream*>(s)->read(buf, n);
    };
    info->seek_fn = [](void* s, int64_t offset) -> int64_t {
        const int64_t at = static_cast<Stream*>(s)->seek(offset);
        return at < 0 ? int64_t(MPV_ERROR_GENERIC) : at;
    };
    info->size_fn = [](void* s) -> int64_t { return static_cast<Stream*>(s)->size(); };
    info->close_fn = [](void* s) { delete static_cast<Stream*>(s); };
    info->cancel_fn = [](void* s) { static_cast<Stream*>(s)->cancel(); };
    return 0;
}

}  // namespace cantovel
