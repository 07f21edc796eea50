// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

namespace telvo::test {

/// A folder of one test, removed with all that is in it. Its files go through the standard library,
/// so that the code under test does not vouch for itself.
struct TemporaryFolder {
    const std::string root =
        testing::TempDir() + "telvo-" +
        std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()) + "/";

    TemporaryFolder() { std::filesystem::create_directories(root); }
    TemporaryFolder(const TemporaryFolder&) = delete;
    ~TemporaryFolder() { std::filesystem::remove_all(root); }

    std::string put(const std::string& name, const std::string& bytes) const {
        std::ofstream(root + name, std::ios::binary) << bytes;
        return root + name;
    }
    std::string content(const std::string& name) const {
        std::ifstream in(root + name, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    auto fileCount() const { return std::distance(std::filesystem::directory_iterator(root), {}); }
};

} // namespace telvo::test
