// SPDX-License-Identifier: GPL-3.0-or-later
//
// The window of the studies, and what it does with the open case.
#include "app/ui/commands.h"
#include "app/ui/frmMain.h"
#include "app/ui/layoutPicture.h"
#include "app/ui/Program.h"
#include "plot/ui/PlanView.h"
#include "project/ui/frmTELVODesc.h"
#include "project/ui/frmTELVOParm.h"

namespace telvo::app::ui {

using study::ui::frmStudies;

namespace {

constexpr const char* FormIsOpen = "A form is open that edits the case: close it first";

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
            }};
}

std::string Commands::openStudied(const project::ProjectCase& current, const std::string& what) {
    if (m_parameters || m_description) return FormIsOpen;
    if (m_program.session().settleUnsaved()) m_program.session().acceptStudied(current, what);
    return {};
}

std::string Commands::takeStudied(const project::ProjectInput& values, const std::string& what) {
    if (m_parameters || m_description) return FormIsOpen;
    m_program.session().acceptParameters(values, what);
    return {};
}

void Commands::studiesFollow() {
    if (m_studies) m_studies->setCase(studyCase());
}

void Commands::studies(study::ui::StudyKind kind) {
    if (!m_studies) {
        m_studies =
            new frmStudies(studyActions(), m_studySettings, m_program.formServices(), viewParent());
        keep(*m_studies);
        m_studies->showPage(kind);
        m_studies->setCase(studyCase());
        note("Studies: " + m_program.session().displayName());
    }
    m_studies->showPage(kind);
    m_studies->show();
    m_studies->raise();
    m_studies->activateWindow();
}

} // namespace telvo::app::ui
