#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <optional>
#include <string>

namespace varnet::test {

/// Sets an environment variable, or unsets it, and brings its old value back at the end.
class ScopedVariable {
public:
    ScopedVariable(const char* name, const std::optional<std::string>& value) : m_name(name) {
        value ? qputenv(m_name, QByteArray::fromStdString(*value)) : qunsetenv(m_name);
    }
    ~ScopedVariable() { m_saved.isNull() ? qunsetenv(m_name) : qputenv(m_name, m_saved); }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;

private:
    const char* m_name;
    QByteArray m_saved = qgetenv(m_name); ///< null when it was not set
};

} // namespace varnet::test
