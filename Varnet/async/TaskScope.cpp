#include "Varnet/async/TaskScope.h"

#include "MeetingCore/base/Failures.h"

#include <QtGlobal>

#include <utility>

namespace varnet {

namespace {

Task<> logFailure(std::string name, Task<> task) {
    try {
        co_await task;
    } catch (const Cancelled&) {
    } catch (...) {
        qWarning("%s: %s", name.c_str(), describe(std::current_exception()).c_str());
    }
}

} // namespace

TaskScope::TaskScope(std::string name) : m_name(std::move(name)) {}

TaskScope::~TaskScope() {
    requestStop();
}

void TaskScope::spawn(Task<> task) {
    // Dropping this one loses nothing: it never throws, and its frame lives until the task is done.
    logFailure(m_name, std::move(task));
}

std::stop_token TaskScope::stopToken() const {
    return m_stop.get_token();
}

void TaskScope::requestStop() {
    m_stop.request_stop();
}

} // namespace varnet
