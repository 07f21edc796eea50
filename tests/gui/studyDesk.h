// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/ui/qtText.h"
#include "engine/driver.h"
#include "programHome.h"
#include "run/caseRun.h"
#include "study/Outcome.h"
#include "study/ui/studies/frmStudies.h"

#include <QComboBox>
#include <QLabel>

/// The window of the studies in the running program.
namespace telvo::test {

using study::ui::frmStudies;
using study::ui::StudyCell;
using study::ui::StudyPage;

/// Milliseconds that a result may take under sanitizers on a loaded machine.
constexpr int Patience = 60000;

/// The program with an example open and the studies on a page.
struct Desk {
    Home home;
    Program& program = home.start();

    explicit Desk(MenuEntry entry, const char* example = "two-side-gobs.TLV") {
        open(example);
        home.trigger(entry);
        wait();
    }
    ~Desk() {
        home.answers.assign(10, Answer::No); // nothing is to be saved
        home.quit();
    }
    void open(const char* example) {
        QVERIFY(program.session().LoadProjFile(std::string(TELVO_EXAMPLES_DIR "/") + example));
    }
    frmStudies& window() { return *home.window<frmStudies>("frmStudies"); }
    StudyPage& page() { return window().currentPage(); }
    void wait() { QTRY_VERIFY_WITH_TIMEOUT(page().isCurrent(), Patience); }
    QString text(const char* label) { return control<QLabel>(window(), label).text(); }
    bool isShown(const char* name) { return control(window(), name).isVisible(); }
    void choose(const char* box, const QString& data) {
        auto& list = control<QComboBox>(window(), box);
        const int at = list.findData(data);
        QVERIFY2(at >= 0, qPrintable(data));
        list.setCurrentIndex(at);
        Q_EMIT list.activated(at);
    }
    double number(std::size_t row, std::size_t column) {
        const StudyCell cell = page().result().table->cell(row, column);
        return std::holds_alternative<double>(cell) ? std::get<double>(cell) : qQNaN();
    }
    std::string words(std::size_t row, std::size_t column) {
        return std::get<std::string>(page().result().table->cell(row, column));
    }
};

/// An outcome as a run of the case has it.
inline double inRun(const project::ProjectCase& current, const std::string& outcome) {
    const auto ran = run::runCase(current);
    const auto* done = std::get_if<run::Run>(&ran);
    if (!done) return qQNaN();
    const auto frame = engine::frameOf(current.Input, current.Units, engine::DevelopmentLoad);
    return study::Outcome::named(outcome)->of(done->results, frame, current.Input);
}

} // namespace telvo::test
