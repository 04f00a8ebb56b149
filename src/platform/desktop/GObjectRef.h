// SPDX-License-Identifier: MIT
#pragma once

#include <glib-object.h>

#include <utility>

namespace Tessaline {

/// Owns one reference to a GObject and drops it on destruction. Copying is not allowed, so an
/// early return can neither leak nor release twice.
template <typename T>
class GObjectRef
{
public:
    GObjectRef() = default;
    /// Takes over a reference the caller already owns (a "transfer full" return value).
    explicit GObjectRef(T* object) : m_object(object) {}
    ~GObjectRef() { reset(); }
    GObjectRef(const GObjectRef&) = delete;
    GObjectRef& operator=(const GObjectRef&) = delete;
    GObjectRef(GObjectRef&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    GObjectRef& operator=(GObjectRef&& other) noexcept
    {
        if (this != &other) {
            reset();
            m_object = std::exchange(other.m_object, nullptr);
        }
        return *this;
    }

    T* get() const { return m_object; }
    explicit operator bool() const { return m_object != nullptr; }
    void reset()
    {
        if (m_object)
            g_object_unref(m_object);
        m_object = nullptr;
    }

private:
    T* m_object = nullptr;
};

} // namespace Tessaline
