// libmpv, and the two hundred libraries it pulls in, are loaded when a player first needs
// them rather than when the program starts: linked directly they took longer to load than
// everything else up to the first painted window. The program calls libmpv's client
// functions by their usual names; these definitions load the library on the first call
// and pass every call on. Without the library a player simply cannot be created.
#include <dlfcn.h>
#include <mpv/client.h>
#include <mpv/render.h>
#include <mpv/stream_cb.h>

#include <string>

namespace {

void* library() {
    static void* const handle = [] {
        const std::string name = "libmpv.so." + std::to_string(MPV_CLIENT_API_VERSION >> 16);
        return dlopen(name.c_str(), RTLD_NOW | RTLD_LOCAL);
    }();
    return handle;
}

template <typename Function>
Function resolve(const char* name) {
    void* const lib = library();
    return lib ? reinterpret_cast<Function>(dlsym(lib, name)) : nullptr;
}

}  // namespace

// Defines `name` to call the library's function of that name, or to give `fallback` (or
// nothing, for a function without a result) when the library is missing.
#define CANTOVEL_MPV_FORWARD(result, name, params, args, fallback)  \
    extern "C" result name params {                                 \
        static const auto real = resolve<decltype(&::name)>(#name); \
        if (!real) return fallback;                                 \
        return real args;                                           \
    }

CANTOVEL_MPV_FORWARD(mpv_handle*, mpv_create, (void), (), nullptr)
CANTOVEL_MPV_FORWARD(int, mpv_initialize, (mpv_handle * ctx), (ctx), MPV_ERROR_UNINITIALIZED)
CANTOVEL_MPV_FORWARD(void, mpv_terminate_destroy, (mpv_handle * ctx), (ctx), void())
CANTOVEL_MPV_FORWARD(const char*, mpv_error_string, (int error), (error),
                     "the mpv library could not be loaded")
CANTOVEL_MPV_FORWARD(void, mpv_free, (void* data), (data), void())
CANTOVEL_MPV_FORWARD(void, mpv_free_node_contents, (mpv_node * node), (node), void())
CANTOVEL_MPV_FORWARD(int, mpv_set_option_string,
                     (mpv_handle * ctx, const char* name, const char* data), (ctx, name, data),
                     MPV_ERROR_UNINITIALIZED)
CANTOVEL_MPV_FORWARD(int, mpv_command, (mpv_handle * ctx, const char** args), (ctx, args),
                     MPV_ERROR_UNINITIALIZED)
CANTOVEL_MPV_FORWARD(int, mpv_command_ret, (mpv_handle * ctx, const char** args, mpv_node* result),
                     (ctx, args, result), MPV_ERROR_UNINITIALIZED)
CANTOVEL_MPV_FORWARD(int, mpv_set_property,
                     (mpv_handle * ctx, const char* name, mpv_format format, void* data),
                     (ctx, name, format, data), MPV_ERROR_UNINITIALIZED)
CANTOVEL_MPV_FORWARD(int, mpv_set_property_string,
                     (mpv_handle * ctx, const char* name, const char* data), (ctx, name, data),
                     MPV_ERROR_UNINITIALIZED)
CANTOVEL_MPV_FORWARD(int, mpv_get_property,
                     (mpv_handle * ctx, const char* name, mpv_format format, void* data),
                     (ctx, name, format, data), MPV_ERROR_UNINITIALIZED)
CANTOVEL_MPV_FORWARD(char*, mpv_get_property_string, (mpv_handle * ctx, const char* name),
                     (ctx, name), nullptr)
CANTOVEL_MPV_FORWARD(int, mpv_observe_property,
                     (mpv_handle * mpv, uint64_t reply_userdata, const char* name,
                      mpv_format format),
                     (mpv, reply_userdata, name, format), MPV_ERROR_UNINITIALIZED)
CANTOVEL_MPV_FORWARD(int, mpv_unobserve_property,
                     (mpv_handle * mpv, uint64_t registered_reply_userdata),
                     (mpv, registered_reply_userdata), MPV_ERROR_UNINITIALIZED)
CANTOVEL_MPV_FORWARD(void, mpv_set_wakeup_callback,
                     (mpv_handle * ctx, void (*cb)(void* d), void* d), (ctx, cb, d), void())
CANTOVEL_MPV_FORWARD(int, mpv_stream_cb_add_ro,
                     (mpv_handle * ctx, const char* protocol, void* user_data,
                      mpv_stream_cb_open_ro_fn open_fn),
                     (ctx, protocol, user_data, open_fn), MPV_ERROR_UNINITIALIZED)

// The render API, for the players that draw their pictures themselves.
CANTOVEL_MPV_FORWARD(int, mpv_render_context_create,
                     (mpv_render_context * *res, mpv_handle* mpv, mpv_render_param* params),
                     (res, mpv, params), MPV_ERROR_UNINITIALIZED)
CANTOVEL_MPV_FORWARD(void, mpv_render_context_set_update_callback,
                     (mpv_render_context * ctx, mpv_render_update_fn callback, void* callback_ctx),
                     (ctx, callback, callback_ctx), void())
CANTOVEL_MPV_FORWARD(int, mpv_render_context_render,
                     (mpv_render_context * ctx, mpv_render_param* params), (ctx, params),
                     MPV_ERROR_UNINITIALIZED)
CANTOVEL_MPV_FORWARD(void, mpv_render_context_free, (mpv_render_context * ctx), (ctx), void())

extern "C" mpv_event* mpv_wait_event(mpv_handle* ctx, double timeout) {
    static const auto real = resolve<decltype(&::mpv_wait_event)>("mpv_wait_event");
    // Only a created player waits for events, and none is created without the library.
    static mpv_event none{};
    return real ? real(ctx, timeout) : &none;
}
