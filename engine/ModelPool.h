#pragma once

#include "engine/Recognizer.h"

#include <memory>
#include <mutex>
#include <vector>

namespace engine {

/// The loaded models: one for each session that runs at the same time, kept for the next session afterwards. Any
/// thread.
class ModelPool {
public:
    /// A model that goes back to the pool when it is let go.
    class Loan {
    public:
        Loan(ModelPool& pool, std::unique_ptr<Recognizer> recognizer);
        ~Loan();
        Loan(const Loan&) = delete;
        Loan& operator=(const Loan&) = delete;
        Recognizer& recognizer() { return *m_recognizer; }

    private:
        ModelPool& m_pool;
        std::unique_ptr<Recognizer> m_recognizer;
    };

    explicit ModelPool(EngineConfig config);

    /// A free model, or a newly loaded one (a third of a second). Throws Failure.
    Loan borrow();

private:
    const EngineConfig m_config;
    std::mutex m_lock;
    std::vector<std::unique_ptr<Recognizer>> m_free;
};

} // namespace engine
