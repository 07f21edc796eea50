// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/ui/studies/Background.h"

#include <exception>
#include <QMetaObject>
#include <utility>

namespace telvo::study::ui {

Background::Background(QObject* parent) : QObject(parent) {}

Background::~Background() {
    cancel();
}

void Background::start(Job job) {
    {
        const std::lock_guard lock(m_mutex);
        m_running.request_stop();
        m_waiting = std::move(job);
        ++m_number;
    }
    m_busy = true;
    if (!m_thread.joinable())
        m_thread = std::jthread([this](const std::stop_token& ends) { work(ends); });
    m_wake.notify_one();
}

void Background::cancel() {
    const std::lock_guard lock(m_mutex);
    m_running.request_stop();
    m_waiting = {};
    ++m_number;
    m_busy = false;
}

void Background::stop() {
    const std::lock_guard lock(m_mutex);
    m_running.request_stop();
}

void Background::work(const std::stop_token& ends) {
    while (true) {
        Job job;
        std::stop_token token;
        std::size_t number = 0;
        {
            std::unique_lock lock(m_mutex);
            if (!m_wake.wait(lock, ends, [this] { return static_cast<bool>(m_waiting); })) return;
            job = std::exchange(m_waiting, {});
            m_running = std::stop_source();
            token = m_running.get_token();
            number = m_number;
        }
        Show show;
        QString why;
        try {
            show = job(token);
        } catch (const std::exception& error) {
            why = QString::fromUtf8(error.what());
        }
        QMetaObject::invokeMethod(
            this,
            [this, number, show = std::move(show), why]() mutable {
                deliver(number, std::move(show), why);
            },
            Qt::QueuedConnection);
    }
}

void Background::deliver(std::size_t number, Show show, const QString& why) {
    {
        const std::lock_guard lock(m_mutex);
        if (number != m_number) return;
    }
    m_busy = false;
    if (!why.isEmpty())
        Q_EMIT failed(why);
    else if (show)
        show();
}

} // namespace telvo::study::ui
