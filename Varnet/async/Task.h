#pragma once

#include <QCoro/QCoroTask>

namespace varnet {

/// A coroutine of the main thread. It starts at once; its parameters are taken by value. A task is awaited or handed to
/// its owner's TaskScope, never dropped.
template <class T = void>
using Task = QCoro::Task<T>;

} // namespace varnet
