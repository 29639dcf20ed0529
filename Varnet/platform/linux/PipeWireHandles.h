#pragma once

#include <pipewire/pipewire.h>

#ifdef __clang__
// Every method of PipeWire's interfaces is such a macro; left off for the sources that include this.
#pragma clang diagnostic ignored "-Wgnu-statement-expression-from-macro-expansion"
#endif

#include <memory>

namespace varnet {

/// Owns an object of PipeWire's library, which `destroy` frees.
template <class T, auto destroy>
struct HandleDeleter {
    void operator()(T* object) const { destroy(object); }
};

template <class T, auto destroy>
using Handle = std::unique_ptr<T, HandleDeleter<T, destroy>>;

/// What a connection of this program to PipeWire is made from. Null when the library cannot be set up; errno says why.
Handle<pw_context, pw_context_destroy> newPipeWireContext(pw_loop* loop);

} // namespace varnet
