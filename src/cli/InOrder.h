// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace telvo::cli {

/// Works on items on several threads and hands on what comes of them in the order in which they were
/// added, always on the thread that adds them. Few items are worked on there, too, so that a short
/// call starts no thread. What is under way is bounded.
template <class Item, class Done>
class InOrder {
  public:
    using Work = std::function<Done(Item&)>;
    using Take = std::function<void(Done&)>;

    /// Given: jobs  threads that work; 1 works on each item as it is added
    ///        work  called by several threads at once
    InOrder(unsigned jobs, Work work, Take take)
        : m_jobs(jobs), m_work(std::move(work)), m_take(std::move(take)) {}
    InOrder(const InOrder&) = delete;

    ~InOrder() {
        {
            const std::lock_guard lock(m_mutex);
            m_stopped = true;
        }
        m_wanted.notify_all();
    }

    void add(Item item) {
        if (m_jobs <= 1) {
            Done done = m_work(item);
            return m_take(done);
        }
        m_next.push_back(std::move(item));
        if (m_next.size() == GroupSize) launch();
    }

    /// Takes everything that is still under way. An exception of the work comes out at its place.
    void finish() {
        if (m_threads.empty()) {
            for (Item& item : m_next) {
                Done done = m_work(item);
                m_take(done);
            }
            return m_next.clear();
        }
        if (!m_next.empty()) launch();
        while (!m_underWay.empty())
            takeFront();
    }

  private:
    static constexpr std::size_t GroupSize = 16;

    struct Group {
        std::vector<Item> items;
        std::vector<Done> done;
        std::exception_ptr failed;
        bool ready = false;
    };

    void launch() {
        auto group = std::make_shared<Group>();
        group->items = std::exchange(m_next, {});
        m_underWay.push_back(group);
        {
            const std::lock_guard lock(m_mutex);
            m_waiting.push_back(std::move(group));
        }
        m_wanted.notify_one();
        if (m_threads.size() < m_jobs) m_threads.emplace_back([this] { workOn(); });
        while (m_underWay.size() > 2 * m_jobs + 2)
            takeFront();
    }

    void workOn() {
        std::unique_lock lock(m_mutex);
        for (;;) {
            m_wanted.wait(lock, [this] { return m_stopped || !m_waiting.empty(); });
            if (m_stopped) return;
            const std::shared_ptr<Group> group = std::move(m_waiting.front());
            m_waiting.pop_front();
            lock.unlock();
            try {
                for (Item& item : group->items)
                    group->done.push_back(m_work(item));
            } catch (...) {
                group->failed = std::current_exception();
            }
            group->items.clear();
            lock.lock();
            group->ready = true;
            m_finished.notify_one();
        }
    }

    void takeFront() {
        const std::shared_ptr<Group> group = std::move(m_underWay.front());
        m_underWay.pop_front();
        {
            std::unique_lock lock(m_mutex);
            m_finished.wait(lock, [&] { return group->ready; });
        }
        for (Done& done : group->done)
            m_take(done);
        if (group->failed) std::rethrow_exception(group->failed);
    }

    const unsigned m_jobs;
    const Work m_work;
    const Take m_take;
    std::vector<Item> m_next;
    std::deque<std::shared_ptr<Group>> m_underWay; ///< in order; of the adding thread alone
    std::mutex m_mutex;
    std::condition_variable m_wanted, m_finished;
    std::deque<std::shared_ptr<Group>> m_waiting;
    bool m_stopped = false;
    std::vector<std::jthread> m_threads; ///< last, so that they are joined before all else goes
};

} // namespace telvo::cli
