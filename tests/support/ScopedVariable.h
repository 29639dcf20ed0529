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
        if (qEnvironmentVariableIsSet(name))
            m_saved = qgetenv(name).toStdString();
        set(value);
    }
    ~ScopedVariable() { set(m_saved); }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;

    void set(const std::optional<std::string>& value) {
        if (value)
            qputenv(m_name, QByteArray::fromStdString(*value));
        else
            qunsetenv(m_name);
    }

private:
    const char* m_name;
    std::optional<std::string> m_saved;
};

} // namespace varnet::test
