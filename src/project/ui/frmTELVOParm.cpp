// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/ui/frmTELVOParm.h"

#include "base/note.h"
#include "base/numbers.h"
#include "base/titles.h"
#include "base/ui/qtText.h"
#include "base/ui/WindowPlaces.h"
#include "project/advisories.h"
#include "project/automatic.h"
#include "project/description.h"
#include "project/fieldText.h"

#include <algorithm>
#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QSplitter>
#include <utility>

namespace telvo::project::ui {

using telvo::ui::fromQt;
using telvo::ui::toQt;

namespace {

constexpr int FiguresDelay = 50; // milliseconds: several keys of a fast typist are one change

} // namespace

frmTELVOParm::frmTELVOParm(OpenCase& open, bool confirmCancel, ParameterActions actions,
                           const telvo::ui::FormServices& services, QWidget* parent)
    : Form("frmTELVOParm", titles::ProjectParameters, "ProjectInputParameters.htm", services,
           parent),
      m_open(open), m_actions(std::move(actions)), m_confirmCancel(confirmCancel) {
    m_stale = staleAutomaticValues(m_open.Project.Input, m_open.Project.Units);
    build();
    m_open.copyProjectToWorking();
    fill(m_open.Working);
    m_kept.emplace(*this, m_open);
    markRefusals();
    connect(qApp, &QApplication::focusChanged, this, &frmTELVOParm::focusMoved);
    Timer1.setSingleShot(true);
    connect(&Timer1, &QTimer::timeout, this, &frmTELVOParm::showFigures);
    messages().status("Editing Project Parameters");
}

frmTELVOParm::~frmTELVOParm() {
    // The focus moves once more while the boxes are taken down.
    disconnect(qApp, nullptr, this, nullptr);
}

void frmTELVOParm::showEvent(QShowEvent* event) {
    Form::showEvent(event);
    if (services().places) services().places->restore(*m_splitter);
    box(Field::EntryHeight).setFocus(Qt::OtherFocusReason);
    Timer1.start(0);
}

void frmTELVOParm::fill(const ProjectInput& input) {
    m_filling = true;
    const ParameterTexts shown = textsFromInput(input);
    for (const FieldId id : RecordNumbers) {
        const InputField& row = rowOf(id.field);
        if (row.isTextBox()) box(id).setText(toQt(shown[id]));
        if (row.isFlag()) check(row.id).setChecked(shown.isChecked(row.id));
    }
    m_entryCount->setText(toQt(shown[Field::NumberEntries]));
    m_entries->setCurrentText(toQt(shown[Field::NumberEntries]));
    m_equal->setChecked(haveEqualSpacing(input));
    m_anal->button(leadingInteger(shown[Field::Anal]))->setChecked(true);
    refresh();
    m_filling = false;
}

ParameterTexts frmTELVOParm::texts() const {
    ParameterTexts shown;
    for (const FieldId id : RecordNumbers) {
        const InputField& row = rowOf(id.field);
        if (row.isTextBox()) shown[id] = fromQt(box(id).text());
        if (row.isFlag()) shown.check(row.id, check(row.id).isChecked());
    }
    shown[Field::NumberEntries] = fromQt(m_entryCount->text());
    shown[Field::Anal] = generalNumber(m_anal->checkedId());
    return shown;
}

ProjectInput frmTELVOParm::values() const {
    return inputFromTexts(m_open.Project.Input, texts());
}

ProjectCase frmTELVOParm::trialCase() {
    m_open.Working = values();
    return m_open.workingCase();
}

NumberEdit& frmTELVOParm::box(FieldId id) const {
    return *m_boxes.at(controlOf(id));
}

QCheckBox& frmTELVOParm::check(Field flag) const {
    return *m_checks.at(controlOf(flag));
}

void frmTELVOParm::userEdited() {
    if (m_filling) return;
    m_filling = true; // what follows from the edit is no edit of its own
    refresh();
    m_filling = false;
    m_edited = true;
    Timer1.start(FiguresDelay);
    Q_EMIT edited();
}

void frmTELVOParm::refresh() {
    enableControls();
    copyEqualSpacing();
    showAutomaticValues();
    markRefusals();
}

void frmTELVOParm::enableControls() {
    const ControlStates states = controlStates(texts(), m_equal->isChecked());
    for (const FieldId id : RecordNumbers)
        if (rowOf(id.field).isTextBox()) box(id).setEnabled(states.isEnabled(id));
    for (int i = 1; i < MaxEntries; ++i) {
        const bool shown = i <= states.distances;
        box({Field::XcutCenters, i}).setVisible(shown);
        findChild<QLabel*>(QStringLiteral("Label23_") + toQt(std::to_string(i)))->setVisible(shown);
    }
}

void frmTELVOParm::copyEqualSpacing() {
    if (!m_equal->isChecked()) return;
    const ParameterTexts equal = withEqualSpacing(texts());
    for (int i = 2; i < MaxEntries; ++i)
        box({Field::XcutCenters, i}).setText(toQt(equal[{Field::XcutCenters, i}]));
}

void frmTELVOParm::showAutomaticValues() {
    const ProjectInput shown = withAutomaticValues(values(), m_open.Project.Units);
    const auto show = [&](Field field) {
        if (check(flagOfAutomatic(field)).isChecked())
            box(field).setText(toQt(shownText(shown, field)));
    };
    show(Field::BreadthAMZ);
    if (shown.DepthCover > 0) show(Field::ArchFactor); // waits while the depth is being typed
}

void frmTELVOParm::useAutomaticValues() {
    m_stale.clear();
    m_staleBanner->hide();
    userEdited();
}

void frmTELVOParm::keepStoredValues() {
    m_staleBanner->hide();
    for (const StaleAutomatic& value : std::exchange(m_stale, {})) {
        check(flagOfAutomatic(value.field)).setChecked(false); // owes its advisory
        box(value.field).setText(toQt(shownText(m_open.Project.Input, value.field)));
    }
}

void frmTELVOParm::markRefusals() {
    const std::vector<Refusal> refusals = acceptanceRefusals(texts());
    const auto refusalOf = [&](const std::string& control) {
        const auto refused = std::find_if(refusals.begin(), refusals.end(),
                                          [&](const Refusal& r) { return r.control == control; });
        return refused == refusals.end() ? QString() : toQt(refused->message);
    };
    for (auto& [name, edit] : m_boxes) {
        // What is still to be entered is no mistake yet.
        const bool open = !m_touched.contains(name) && edit->text() == QLatin1String("0");
        QString message = open ? QString() : refusalOf(name);
        if (message.isEmpty() && m_kept) message = m_kept->messageOf(name, edit->text());
        if (message.isEmpty() && name == m_whyControl) message = m_why;
        edit->setRefusal(message);
    }
}

/// A value in another unit is converted when the user agrees.
std::optional<QString> frmTELVOParm::readPasted(const QString& pasted, FieldKind kind) {
    const FieldText read = readFieldText(fromQt(pasted), kind, m_open.Project.Units);
    if (!read.refusal.empty()) {
        tell(read.refusal, titles::Error);
        return std::nullopt;
    }
    if (!read.remark.empty() && ask(read.remark + ". Enter " + read.number + "?", Buttons::YesNo,
                                    Answer::Yes, titles::Message) != Answer::Yes)
        return std::nullopt;
    return toQt(read.number);
}

void frmTELVOParm::showFigures() {
    ProjectCase shown = m_open.Project;
    shown.Input = values();
    // What cannot be drawn is said in the picture; the box comes with the View button alone. A case
    // that is still to be entered has no picture to be refused.
    const bool blank = !m_edited && !(shown.Input.EntryWidth > 0) && !(shown.Input.XcutSpacing > 0);
    if (m_picture.draw && !blank) (void)m_picture.draw(shown);
    if (!m_actions.figures) return;
    const KeyFigures figures = figuresOf(shown);
    m_why = blank ? QString() : toQt(figures.why);
    m_whyControl = blank ? std::string() : figures.whyControl;
    markRefusals();
    const auto show = [this](const char* name, const std::string& text, const QString& none) {
        QLabel& label = *m_figures.at(name);
        label.setText(text.empty() ? QStringLiteral("\u2013") : toQt(text));
        label.setToolTip(!text.empty()     ? label.property(FigureToolTip).toString()
                         : m_why.isEmpty() ? none
                                           : m_why);
    };
    show("lblPanelWidth", figures.PanelWidth, {});
    show("lblDevelopmentSF", figures.DevelopmentSF, {});
    show("lblRetreatSF", figures.RetreatSF, tr("There is no retreat without an active gob"));
    show("lblBarrierSF", figures.BarrierSF, tr("No barrier is in use"));
    QLabel& why = *m_figures.at("lblWhy");
    why.setText(m_why.isEmpty() ? QString() : tr("No factors: %1").arg(m_why));
    why.setVisible(!m_why.isEmpty());
}

/// No figure comes of half a number.
KeyFigures frmTELVOParm::figuresOf(const ProjectCase& shown) const {
    for (const auto& [name, edit] : m_boxes) {
        const QString objection = edit->objection();
        if (objection.isEmpty() || !edit->isEnabled() || edit->isHidden()) continue;
        KeyFigures none;
        none.why = fromQt(edit->accessibleName() + QStringLiteral(": ") + objection);
        none.whyControl = name;
        return none;
    }
    return m_actions.figures(shown);
}

void frmTELVOParm::rowToggled(Field row) {
    if (m_filling) return;
    if (check(row).isChecked())
        if (const auto refused = checkLeavingRow(texts(), row)) {
            tell(refused->message, refused->title);
            check(row).setChecked(false);
            return;
        }
    userEdited();
}

void frmTELVOParm::focusMoved(QWidget* old, QWidget* now) {
    if (m_filling || m_advising || !isVisible()) return;
    // A move to another tab goes through a step without any focus.
    if (old && isAncestorOf(old) && qobject_cast<NumberEdit*>(old))
        m_leftBox = fromQt(old->objectName());
    if (!m_leftBox.empty() && m_touched.insert(m_leftBox).second) markRefusals();
    if (!now || !isAncestorOf(now)) return;
    const std::string left = std::exchange(m_leftBox, {});
    // Who gives up or asks for help is not held up.
    static const std::set<QString> freeOfAdvice = {"cmdCancel", "cmdHelp"};
    if (freeOfAdvice.contains(now->objectName())) m_pendingAdvisories.clear();
    if (left.empty() || left == fromQt(now->objectName()) ||
        freeOfAdvice.contains(now->objectName()))
        return;
    m_pendingAdvisories.push_back(left);
    // A box in the middle of a mouse press would swallow the release.
    QTimer::singleShot(0, this, &frmTELVOParm::showPendingAdvisories);
}

void frmTELVOParm::showPendingAdvisories() {
    if (m_pendingAdvisories.empty() || m_advising) return;
    if (QApplication::mouseButtons() != Qt::NoButton) {
        QTimer::singleShot(20, this, &frmTELVOParm::showPendingAdvisories);
        return;
    }
    for (const std::string& control : std::exchange(m_pendingAdvisories, {}))
        if (const auto edit = m_boxes.find(control); edit != m_boxes.end())
            showAdvisory(advisory(AdvisoryTrigger::FocusLeft, control, edit->second->value(),
                                  m_open.Project.Units));
}

void frmTELVOParm::showAdvisory(std::optional<std::string_view> text) {
    if (!text || m_filling || m_advising) return;
    m_advising = true;
    tell("Warning: " + std::string(*text), titles::RangeWarning);
    m_advising = false;
}

void frmTELVOParm::results() {
    showPendingAdvisories();
    if (!m_actions.results) return;
    // What stops a run keeps its own message; nothing is computed from half a number.
    if (!checkBeforeAnalysis(values()) && refuseUnreadNumber()) return;
    if (const auto refused = m_actions.results(trialCase())) refuse(*refused);
}

void frmTELVOParm::view() {
    showPendingAdvisories();
    if (!m_picture.draw) return;
    if (const auto refused = m_picture.draw(trialCase())) {
        tell(refused->message, refused->title);
        return;
    }
    messages().history("Panel layout drawn");
    messages().status("Panel layout drawn");
}

void frmTELVOParm::copyPicture() {
    if (!m_picture.image) return;
    const QImage image = m_picture.image();
    if (!image.isNull()) QApplication::clipboard()->setImage(image);
    telvo::note(messages(),
                image.isNull() ? "No panel layout to copy" : "Panel layout copied to clipboard");
}

void frmTELVOParm::accept() {
    showPendingAdvisories();
    if (const auto refused = checkAcceptance(texts())) {
        for (const auto& [name, edit] : m_boxes)
            m_touched.insert(name);
        markRefusals();
        refuse(*refused);
        return;
    }
    if (refuseUnreadNumber()) return;
    m_accepted = true;
    const ProjectInput accepted = values();
    m_modified = m_actions.accept && m_actions.accept(accepted);
    m_open.Working = accepted;
    Form::accept();
}

void frmTELVOParm::reject() {
    m_pendingAdvisories.clear();
    if (m_confirmCancel &&
        ask(DiscardQuestion, Buttons::YesNo, Answer::No, titles::Message) != Answer::Yes)
        return;
    Form::reject();
}

void frmTELVOParm::done(int result) {
    if (services().places) services().places->save(*m_splitter);
    const char* outcome =
        m_modified ? "Project Parameters Modified" : "Project Parameters Not Modified";
    messages().history(outcome);
    messages().status(outcome);
    Form::done(result);
}

} // namespace telvo::project::ui
