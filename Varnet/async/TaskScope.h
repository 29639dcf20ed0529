#pragma once

#include "Varnet/async/Task.h"

#include <stop_token>
#include <string>

namespace varnet {

/// The tasks that an owner starts and nobody awaits. Main thread.
///
/// Its destruction requests stop and returns at once: a task of it may still be waiting then and go on later, so after
/// each wait it asks its stop token before it touches the owner.
class TaskScope {
public:
    /// `name` says in the log whose tasks these are, such as "Speech session".
    explicit TaskScope(std::string name);
    ~TaskScope();
    TaskScope(const TaskScope&) = delete;
    TaskScope& operator=(const TaskScope&) = delete;

    /// Keeps the task until it is done and logs what it throws, except Cancelled.
    void spawn(Task<> task);

    /// Requested by `requestStop` and by the destruction of the scope. These two may be called on any thread.
    std::stop_token stopToken() const;
    void requestStop();

private:
    std::string m_name;
    std::stop_source m_stop;
};

} // namespace varnet
