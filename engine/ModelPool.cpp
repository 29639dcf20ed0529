#include "engine/ModelPool.h"

namespace engine {

ModelPool::Loan::Loan(ModelPool& pool, std::unique_ptr<Recognizer> recognizer)
    : m_pool(pool), m_recognizer(std::move(recognizer)) {}

ModelPool::Loan::~Loan() {
    const std::scoped_lock lock(m_pool.m_lock);
    m_pool.m_free.push_back(std::move(m_recognizer));
}

ModelPool::ModelPool(EngineConfig config) : m_config(std::move(config)) {}

ModelPool::Loan ModelPool::borrow() {
    {
        const std::scoped_lock lock(m_lock);
        if (!m_free.empty()) {
            std::unique_ptr<Recognizer> recognizer = std::move(m_free.back());
            m_free.pop_back();
            recognizer->reset();
            return {*this, std::move(recognizer)};
        }
    }
    return {*this, std::make_unique<Recognizer>(m_config)};
}

} // namespace engine
