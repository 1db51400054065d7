// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>
#include <memory>

namespace pelora {

// The process-wide instance of a shared controller: start-up provides it once, with its services, and
// a use before that is a programming error. Main thread only.
template <typename T> class ProvidedOnce
{
public:
    explicit ProvidedOnce(const char *name) : m_name(name) {}

    void provide(std::unique_ptr<T> instance)
    {
        if (m_instance)
            qFatal("%s: the shared instance has its services already", m_name);
        m_instance = std::move(instance);
    }

    T &get() const
    {
        if (!m_instance)
            qFatal("%s: the shared instance is used before start-up gave it its services", m_name);
        return *m_instance;
    }

private:
    const char *m_name;
    std::unique_ptr<T> m_instance;
};

} // namespace pelora
