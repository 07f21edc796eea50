// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cassert>
#include <string>
#include <utility>
#include <variant>

namespace telvo {

/// What stopped an operation: a sentence for the user and the place it speaks of
/// (a file with its line, an input field). `where` may be empty.
struct Fault {
    std::string message;
    std::string where;

    bool operator==(const Fault&) const = default;
};

/// The one line that a user reads: "where: message".
inline std::string faultText(const Fault& fault) {
    return fault.where.empty() ? fault.message : fault.where + ": " + fault.message;
}

/// An input that a check refuses. `title` is the title of the message box without the calling
/// window's prefix (empty: the program title), `control` the name of the control that failed.
struct Refusal {
    std::string message;
    std::string title;
    std::string control;

    bool operator==(const Refusal&) const = default;
};

/// A value, or the fault that kept it from being made.
template <typename T>
class [[nodiscard]] Result {
  public:
    Result(T value) : m_state(std::in_place_index<0>, std::move(value)) {}
    /// A value made in place, for large records that are filled afterwards.
    explicit Result(std::in_place_t) : m_state(std::in_place_index<0>) {}
    Result(std::in_place_t, const T& initial) : m_state(std::in_place_index<0>, initial) {}
    Result(Fault fault) : m_state(std::in_place_index<1>, std::move(fault)) {}

    explicit operator bool() const { return m_state.index() == 0; }

    T& value() {
        assert(*this);
        return *std::get_if<0>(&m_state);
    }
    const T& value() const {
        assert(*this);
        return *std::get_if<0>(&m_state);
    }
    const Fault& fault() const {
        assert(!*this);
        return *std::get_if<1>(&m_state);
    }
    T* operator->() { return &value(); }
    const T* operator->() const { return &value(); }
    T& operator*() { return value(); }
    const T& operator*() const { return value(); }

  private:
    std::variant<T, Fault> m_state;
};

/// Outcome of an operation that yields nothing but its success.
using Status = Result<std::monostate>;

inline Status success() {
    return Status(std::monostate{});
}

} // namespace telvo
