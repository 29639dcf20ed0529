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

} // namespace varnet
