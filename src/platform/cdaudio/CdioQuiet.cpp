#include "platform/cdaudio/CdioQuiet.h"

#include <cdio/logging.h>

#include <cstdio>
#include <mutex>

namespace cantovel {

namespace {

void handler(cdio_log_level_t level, const char* message) {
    if (level >= CDIO_LOG_ERROR) std::fprintf(stderr, "libcdio: %s\n", message);
}

}  // namespace

void quietCdio() {
    static std::once_flag once;
    std::call_once(once, [] { cdio_log_set_handler(&handler); });
}

}  // namespace cantovel
