// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace telvo::study {

/// The SHA-256 of bytes that come piece by piece.
class Sha256 {
  public:
    Sha256();
    Sha256(Sha256&& other) noexcept;
    ~Sha256();
    void add(std::string_view bytes);
    /// In 64 hexadecimal digits. Nothing can be added afterwards.
    std::string digits();

  private:
    struct State;
    std::unique_ptr<State> m_state;
};

std::string sha256Of(std::string_view bytes);

} // namespace telvo::study
