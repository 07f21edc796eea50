// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/file/sha256.h"

#include <gcrypt.h>

#include <cassert>
#include <new>

namespace telvo::study {

namespace {

/// The library asks to be told once that nobody needs memory for secrets.
void prepareLibrary() {
    static const bool ready = [] {
        if (gcry_control(GCRYCTL_INITIALIZATION_FINISHED_P)) return true;
        gcry_check_version(nullptr);
        gcry_control(GCRYCTL_DISABLE_SECMEM, 0);
        gcry_control(GCRYCTL_INITIALIZATION_FINISHED, 0);
        return true;
    }();
    (void)ready;
}

} // namespace

struct Sha256::State {
    gcry_md_hd_t handle = nullptr;
};

Sha256::Sha256() : m_state(std::make_unique<State>()) {
    prepareLibrary();
    if (gcry_md_open(&m_state->handle, GCRY_MD_SHA256, 0) != 0) throw std::bad_alloc();
}

Sha256::Sha256(Sha256&& other) noexcept = default;

Sha256::~Sha256() {
    if (m_state) gcry_md_close(m_state->handle);
}

void Sha256::add(std::string_view bytes) {
    gcry_md_write(m_state->handle, bytes.data(), bytes.size());
}

std::string Sha256::digits() {
    constexpr std::string_view hexadecimal = "0123456789abcdef";
    const unsigned char* bytes = gcry_md_read(m_state->handle, GCRY_MD_SHA256);
    assert(bytes);
    std::string text;
    for (unsigned i = 0; i < gcry_md_get_algo_dlen(GCRY_MD_SHA256); ++i) {
        text += hexadecimal[bytes[i] >> 4];
        text += hexadecimal[bytes[i] & 15];
    }
    return text;
}

std::string sha256Of(std::string_view bytes) {
    Sha256 sum;
    sum.add(bytes);
    return sum.digits();
}

} // namespace telvo::study
