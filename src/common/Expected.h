// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QtGlobal>

#include <type_traits>
#include <utility>
#include <variant>

namespace Tessaline {

/// The error half of an `Expected`: `return Unexpected(QStringLiteral("..."));`.
template <typename E>
class Unexpected
{
public:
    explicit Unexpected(E error) : m_error(std::move(error)) {}

    const E& error() const& { return m_error; }
    E&& error() && { return std::move(m_error); }

private:
    E m_error;
};

template <typename E>
Unexpected(E) -> Unexpected<E>;

/// What a fallible operation gives back: a value, or the reason it failed (a text the user may
/// read). Shaped like C++23's std::expected so that it can be swapped for it later; reading the
/// value of a failure (or the error of a success) is a programming error and stops the process.
template <typename T, typename E = QString>
class Expected
{
public:
    using value_type = T;
    using error_type = E;

    Expected() requires std::is_default_constructible_v<T> : m_state(std::in_place_index<0>) {}
    Expected(const T& value) : m_state(std::in_place_index<0>, value) {}
    Expected(T&& value) : m_state(std::in_place_index<0>, std::move(value)) {}
    template <typename G>
    Expected(const Unexpected<G>& failure) : m_state(std::in_place_index<1>, failure.error())
    {}
    template <typename G>
    Expected(Unexpected<G>&& failure) : m_state(std::in_place_index<1>, std::move(failure).error())
    {}

    bool has_value() const { return m_state.index() == 0; }
    explicit operator bool() const { return has_value(); }

    const T& value() const&
    {
        requireValue();
        return *std::get_if<0>(&m_state);
    }
    T& value() &
    {
        requireValue();
        return *std::get_if<0>(&m_state);
    }
    T&& value() &&
    {
        requireValue();
        return std::move(*std::get_if<0>(&m_state));
    }
    const T& operator*() const& { return value(); }
    T& operator*() & { return value(); }
    T&& operator*() && { return std::move(*this).value(); }
    const T* operator->() const { return &value(); }
    T* operator->() { return &value(); }

    template <typename U>
    T value_or(U&& fallback) const&
    {
        return has_value() ? value() : static_cast<T>(std::forward<U>(fallback));
    }

    const E& error() const&
    {
        requireError();
        return *std::get_if<1>(&m_state);
    }
    E&& error() &&
    {
        requireError();
        return std::move(*std::get_if<1>(&m_state));
    }

private:
    void requireValue() const
    {
        if (!has_value())
            qFatal("Expected: read the value of a failure");
    }
    void requireError() const
    {
        if (has_value())
            qFatal("Expected: read the error of a success");
    }

    std::variant<T, E> m_state;
};

/// An operation that gives nothing back but may fail.
template <typename E>
class Expected<void, E>
{
public:
    using value_type = void;
    using error_type = E;

    Expected() = default;
    template <typename G>
    Expected(const Unexpected<G>& failure) : m_error(failure.error()), m_failed(true)
    {}
    template <typename G>
    Expected(Unexpected<G>&& failure) : m_error(std::move(failure).error()), m_failed(true)
    {}

    bool has_value() const { return !m_failed; }
    explicit operator bool() const { return has_value(); }

    const E& error() const&
    {
        if (!m_failed)
            qFatal("Expected: read the error of a success");
        return m_error;
    }
    E&& error() &&
    {
        if (!m_failed)
            qFatal("Expected: read the error of a success");
        return std::move(m_error);
    }

private:
    E m_error{};
    bool m_failed = false;
};

} // namespace Tessaline
