// SPDX-License-Identifier: GPL-3.0-or-later
#include "table/ui/readInBackground.h"

#include "base/ui/qtText.h"

#include <atomic>
#include <exception>
#include <future>
#include <memory>
#include <new>
#include <QApplication>
#include <QLabel>
#include <QProgressDialog>
#include <QPushButton>
#include <QTimer>
#include <thread>
#include <utility>

namespace telvo::table::ui {

using telvo::ui::toQt;

namespace {

using Outcome = Result<table::CaseTable>;

/// What window and thread share. It lives as long as either of them.
struct Reading {
    std::stop_source stop;
    std::atomic<std::size_t> rows = 0;
    std::promise<Outcome> outcome;
};

Outcome readGuarded(const std::string& file,
                    const std::function<Outcome(const table::ReadWatch& watch)>& read,
                    const table::ReadWatch& watch) {
    try {
        return read(watch);
    } catch (const std::bad_alloc&) {
        return Fault{"there is not enough memory to read it", file};
    } catch (const std::exception& error) {
        return Fault{error.what(), file};
    }
}

/// Shows the window until the thread is done. Returned: false when the user cancelled.
bool waitInWindow(const std::string& file, Reading& reading, std::future<Outcome>& outcome,
                  QWidget* parent) {
    using namespace std::chrono_literals;
    QProgressDialog window(parent);
    window.setObjectName("frmReading");
    window.setWindowTitle(QObject::tr("Import Case"));
    window.setWindowModality(Qt::ApplicationModal);
    auto* label = new QLabel(&window);
    label->setObjectName("lblReading");
    label->setTextFormat(Qt::PlainText); // a name like "<b>" is no markup
    window.setLabel(label);
    auto* cancel = new QPushButton(QObject::tr("Cancel"), &window);
    cancel->setObjectName("cmdCancel");
    cancel->setToolTip(QObject::tr("Stops reading and leaves the case as it is"));
    window.setCancelButton(nullptr); // with its Escape, which a second one would make ambiguous
    window.setCancelButton(cancel);
    window.setRange(0, 0); // how much there is shows only at the end
    window.setMinimumWidth(window.fontMetrics().averageCharWidth() * 60);
    const auto look = [&] {
        const auto rows = reading.rows.load();
        label->setText(rows == 0 ? QObject::tr("Reading %1").arg(toQt(file))
                                 : QObject::tr("Reading %1: %L2 rows").arg(toQt(file)).arg(rows));
        if (outcome.wait_for(0s) == std::future_status::ready) window.accept();
    };
    look();
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &window, look);
    timer.start(50);
    return window.exec() == QDialog::Accepted;
}

} // namespace

std::optional<Outcome> readInBackground(const std::string& file,
                                        std::function<Outcome(const table::ReadWatch& watch)> read,
                                        QWidget* parent, std::chrono::milliseconds patience) {
    using namespace std::chrono_literals;
    const auto reading = std::make_shared<Reading>();
    auto outcome = reading->outcome.get_future();
    std::thread thread([reading, file, read = std::move(read)] {
        const table::ReadWatch watch{reading->stop.get_token(),
                                     [&](std::size_t rows) { reading->rows = rows; }};
        reading->outcome.set_value(readGuarded(file, read, watch));
    });
    QApplication::setOverrideCursor(Qt::WaitCursor);
    bool done = outcome.wait_for(patience) == std::future_status::ready;
    QApplication::restoreOverrideCursor();
    if (!done) done = waitInWindow(file, *reading, outcome, parent);
    if (done) {
        thread.join();
        return outcome.get();
    }
    reading->stop.request_stop();
    // A file that hangs, on a share that went away, must not hang the program.
    if (outcome.wait_for(2s) == std::future_status::ready)
        thread.join();
    else
        thread.detach();
    return std::nullopt;
}

} // namespace telvo::table::ui
