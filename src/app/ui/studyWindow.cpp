// SPDX-License-Identifier: GPL-3.0-or-later
//
// The window of the studies, and what it does with the open case.
#include "app/ui/commands.h"
#include "app/ui/frmMain.h"
#include "app/ui/layoutPicture.h"
#include "app/ui/Program.h"
#include "base/numbers.h"
#include "plot/ui/PlanView.h"
#include "project/ui/frmTELVODesc.h"
#include "project/ui/frmTELVOParm.h"

namespace telvo::app::ui {

using study::ui::frmStudies;

namespace {

constexpr const char* FormIsOpen = "A form is open that edits the case: close it first";

constexpr std::size_t MostRuns = 30; // of this session that a comparison offers

} // namespace

study::ui::StudyCase Commands::studyCase() const {
    const ProjectSession& session = m_program.session();
    const ShownCase now = onScreen();
    study::ui::StudyCase subject{
        now.current, session.displayName(), now.options.RoundTELVOSF, {}, now.options};
    // The form may hold the first values of a new case.
    const bool typed = m_parameters && now.current.Input != session.project().Input;
    if (const auto refused = session.graphRefusal(); refused && !(session.isEmpty() && typed))
        subject.refusal = refused->message;
    return subject;
}

study::ui::StudyActions Commands::studyActions() {
    return {pictureActions(),
            m_program.fileDialogs(),
            [this] { return m_program.session().fileFilters(); },
            [this] { return m_program.settings().values().DataPath; },
            [this](const project::ProjectCase& current, const std::string& what) {
                return openStudied(current, what);
            },
            [this](const project::ProjectInput& values, const std::string& what) {
                return takeStudied(values, what);
            },
            [this](const QString& name, QWidget* parent) {
                auto* view = new plot::ui::PlanView(name, parent);
                return study::ui::PlanPane{view, [this, view](const project::ProjectCase& current) {
                                               drawPlan(*view, current, m_program.settings());
                                           }};
            },
            [this]() -> study::StudySettings& { return m_caseStudies.settings(); },
            [this] { return m_caseStudies.isChanged(); },
            [this] { saveStudies(); },
            [this] {
                m_caseStudies.open();
                studiesFollow();
            },
            [this] { return std::vector(m_sessionRuns.rbegin(), m_sessionRuns.rend()); }};
}

/// The row of a table joins what the open case is compared with.
void Commands::addToCompare(study::NamedCase one) {
    note("Added to Compare: " + one.first);
    m_caseStudies.settings().compareCases.push_back(std::move(one));
    m_caseStudies.renew();
    studiesFollow();
}

/// Runs of one and the same case in a row are one.
void Commands::keepRun(const project::ProjectCase& current) {
    if (!m_sessionRuns.empty() && m_sessionRuns.back().second == current) return;
    m_sessionRuns.emplace_back("Run " + std::to_string(++m_runCount) + ", " +
                                   m_program.session().displayName() + ", depth " +
                                   generalNumber(current.Input.DepthCover, 6),
                               current);
    if (m_sessionRuns.size() > MostRuns) m_sessionRuns.erase(m_sessionRuns.begin());
    studiesFollow();
}

void Commands::saveStudies() {
    ProjectSession& session = m_program.session();
    if (!session.hasFile()) {
        const bool named = m_program.messages().ask(
                               "The study is kept beside the file of its case, which has none "
                               "yet. Save the case now?",
                               Buttons::YesNo, Answer::Yes, {}) == Answer::Yes &&
                           session.FileMenuSave(false);
        if (!named) return m_program.messages().status("Study not saved");
        studiesFollow();
    }
    m_caseStudies.save();
    studiesFollow();
}

bool Commands::mayCloseStudies() {
    studiesFollow();
    return m_caseStudies.mayClose();
}

std::string Commands::openStudied(const project::ProjectCase& current, const std::string& what) {
    if (m_parameters || m_description) return FormIsOpen;
    if (!m_program.session().settleUnsaved()) return {};
    studiesFollow(); // the case may have been saved under a name
    m_caseStudies.passOn();
    m_program.session().acceptStudied(current, what);
    return {};
}

std::string Commands::takeStudied(const project::ProjectInput& values, const std::string& what) {
    if (m_parameters || m_description) return FormIsOpen;
    m_program.session().acceptParameters(values, what);
    return {};
}

void Commands::studiesFollow() {
    const ProjectSession& session = m_program.session();
    m_caseStudies.follow({session.project(), session.caseNumber(), session.hasFile(),
                          session.reportOptions().RoundTELVOSF});
    if (!m_studies) return;
    m_caseStudies.load();
    m_studies->setCase(studyCase(), m_caseStudies.takeRenewed());
}

void Commands::studies(study::ui::StudyKind kind) {
    if (!m_studies) {
        m_studies = new frmStudies(studyActions(), m_program.formServices(), viewParent());
        keep(*m_studies);
        m_studies->showPage(kind);
        m_caseStudies.renew();
        studiesFollow();
        note("Studies: " + m_program.session().displayName());
    }
    m_studies->showPage(kind);
    m_studies->show();
    m_studies->raise();
    m_studies->activateWindow();
}

} // namespace telvo::app::ui
