#pragma once
// Reaching the windows the player hands media to. Each is a Form that implements one
// of the small interfaces of this folder (PlaylistView, VideoPlayerWindow, ...); the
// window itself comes from its factory in Components the first time it is touched, as
// a form loads on first reference.

#include "app/Form.h"
#include "app/Forms.h"
#include "platform/Components.h"

namespace cantovel {

// The loaded window implementing I, or null.
template <class I>
I* loadedWindow() {
    for (Form* f : Forms::all())
        if (auto* w = dynamic_cast<I*>(f)) return w;
    return nullptr;
}

// The window implementing I, loaded (hidden) if it is not; null when none is provided.
template <class I>
I* touchWindow() {
    if (I* w = loadedWindow<I>()) return w;
    // The form lives until it is unloaded, as every form does.
    return Components::create<I>().release();
}

template <class I>
Form* formOf(I* window) {
    return dynamic_cast<Form*>(window);
}

// Unloads the window implementing I if it is loaded.
template <class I>
void unloadWindow() {
    if (Form* f = formOf(loadedWindow<I>())) f->unload();
}

}  // namespace cantovel
