// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/InOrder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <set>
#include <stdexcept>

namespace telvo::cli {
namespace {

TEST(InOrder, HandsOnInTheOrderOfAdding) {
    for (const unsigned jobs : {1U, 2U, 5U})
        for (const int count : {0, 1, 15, 16, 17, 1000}) {
            std::vector<int> taken;
            const auto here = std::this_thread::get_id();
            std::atomic<int> most = 0, under = 0;
            InOrder<int, int> pipeline(
                jobs,
                [&](int& item) {
                    most = std::max(most.load(), ++under);
                    if (item % 7 == 0) std::this_thread::sleep_for(std::chrono::microseconds(50));
                    --under;
                    return 3 * item;
                },
                [&](int& done) {
                    EXPECT_EQ(std::this_thread::get_id(), here);
                    taken.push_back(done);
                });
            for (int i = 0; i < count; ++i)
                pipeline.add(i);
            pipeline.finish();
            ASSERT_EQ(taken.size(), static_cast<std::size_t>(count));
            for (int i = 0; i < count; ++i)
                EXPECT_EQ(taken[static_cast<std::size_t>(i)], 3 * i);
            EXPECT_LE(most, static_cast<int>(jobs));
        }
}

TEST(InOrder, AFailureComesOutAtItsPlace) {
    std::vector<int> taken;
    InOrder<int, int> pipeline(
        3,
        [](int& item) {
            if (item == 100) throw std::runtime_error("case 100");
            return item;
        },
        [&](int& done) { taken.push_back(done); });
    EXPECT_THROW(
        {
            for (int i = 0; i < 500; ++i)
                pipeline.add(i);
            pipeline.finish();
        },
        std::runtime_error);
    EXPECT_EQ(taken.size(), 100U);
}

TEST(InOrder, WhatIsUnderWayIsBounded) {
    std::atomic<int> made = 0;
    int taken = 0, most = 0;
    InOrder<int, int> pipeline(
        2,
        [&](int& item) {
            ++made;
            return item;
        },
        [&](int&) { ++taken; });
    for (int i = 0; i < 5000; ++i) {
        pipeline.add(i);
        most = std::max(most, i - taken);
    }
    EXPECT_LT(most, 200);
    pipeline.finish();
    EXPECT_EQ(taken, 5000);
}

} // namespace
} // namespace telvo::cli
