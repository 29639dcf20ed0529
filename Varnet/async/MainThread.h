#pragma once

#include <functional>

namespace varnet {

/// Whether the caller runs on the thread of the application object.
bool onMainThread();

/// Runs `work` on the main thread's event loop, never inside this call, in the order of the calls of one thread. Any
/// thread. What `work` throws is logged. Without an application object, as while the program ends, it is dropped.
void postToMain(std::function<void()> work);

} // namespace varnet
