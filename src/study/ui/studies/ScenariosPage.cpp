// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/ui/studies/ScenariosPage.h"

#include "base/text.h"
#include "base/ui/Form.h"
#include "base/ui/qtText.h"
#include "study/output/factors.h"
#include "study/ui/studies/choices.h"

#include <algorithm>
#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

namespace telvo::study::ui {

using project::FieldId;
using telvo::ui::fromQt;
using telvo::ui::toQt;

ScenariosPage::ScenariosPage(PageActions actions, QWidget* parent)
    : StudyPage("Scenarios", tr(ScenariosTitle), tr("what if"), std::move(actions), parent) {
    makeFields();
    makeShortcuts();
    CellEditing editing;
    editing.mayEdit = [this](std::size_t row, int column) { return edits(row, column); };
    editing.choices = [this](std::size_t, int column) {
        QStringList list;
        const auto id = m_sheet ? m_sheet->inputAt(column) : std::nullopt;
        if (!id) return list;
        for (const std::string& one : scenarioChoices(*id))
            list << toQt(one);
        if (!list.isEmpty()) list.prepend({}); // as in the case
        return list;
    };
    editing.take = [this](std::size_t row, int column, const QString& text) {
        take(row, column, fromQt(text));
    };
    editing.refusal = [this](std::size_t row, int column) {
        const ScenarioDraft* draft = m_sheet ? m_sheet->draftAt(row) : nullptr;
        const auto id = draft ? m_sheet->inputAt(column) : std::nullopt;
        if (!draft || (!id && column != 0)) return QString();
        const auto* refused = draft->refusedAt(id);
        return refused ? toQt(refused->why) : QString();
    };
    tableView().setEditing(std::move(editing));
    tableView().horizontalHeader()->setStretchLastSection(true);
    connect(tableView().selectionModel(), &QItemSelectionModel::currentChanged, this,
            &ScenariosPage::showButtons);
    connect(tableView().model(), &QAbstractItemModel::modelReset, this,
            &ScenariosPage::showButtons);
    splitter().setStretchFactor(0, 2);
    splitter().setStretchFactor(1, 3);
}

ScenariosPage::~ScenariosPage() {
    tableView().setEditing({}); // the editor of a cell outlives the page's own part
}

void ScenariosPage::makeFields() {
    auto* first = new QHBoxLayout;
    const auto add = [this](QHBoxLayout& row, const char* name, const QString& caption,
                            const QString& toolTip, void (ScenariosPage::*action)()) {
        auto* button = new QPushButton(caption, this);
        telvo::ui::describe(*button, named("cmd", name), caption, toolTip);
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, action);
        row.addWidget(button);
        return button;
    };
    m_add = add(*first, "Add", tr("&Add"), tr("A new scenario below the selected one (Ins)"),
                &ScenariosPage::add);
    m_duplicate = add(*first, "Duplicate", tr("&Duplicate"),
                      tr("A copy of the selected scenario (Ctrl+D)"), &ScenariosPage::duplicate);
    m_rename =
        add(*first, "Rename", tr("Rena&me"),
            tr("Edits the name of the selected scenario (F2 in its name)"), &ScenariosPage::rename);
    m_delete = add(*first, "Delete", tr("D&elete"),
                   tr("Takes the selected scenario away (Ctrl+Del)"), &ScenariosPage::remove);
    m_up = new QPushButton(tr("&Up"), this);
    m_down = new QPushButton(tr("Do&wn"), this);
    telvo::ui::describe(*m_up, named("cmd", "Up"), tr("Up"),
                        tr("Moves the selected scenario up (Alt+Up)"));
    telvo::ui::describe(*m_down, named("cmd", "Down"), tr("Down"),
                        tr("Moves the selected scenario down (Alt+Down)"));
    connect(m_up, &QPushButton::clicked, this, [this] { move(-1); });
    connect(m_down, &QPushButton::clicked, this, [this] { move(1); });
    for (QPushButton* button : {m_up, m_down}) {
        button->setAutoDefault(false);
        first->addWidget(button);
    }
    first->addStretch();
    m_save = add(*first, "Save", tr("Save as Case &Files..."),
                 tr("Makes a case file of every scenario in a folder of your choice"),
                 &ScenariosPage::saveFiles);
    fields().addLayout(first);

    auto* second = new QHBoxLayout;
    m_input = new QComboBox(this);
    telvo::ui::describe(*m_input, named("cbo", "Input"), tr("Input"),
                        tr("An input that scenarios are to change"));
    for (const FieldId id : project::RecordNumbers)
        if (id.field != project::Field::Reserved)
            m_input->addItem(toQt(project::fullLabelOf(id)), toQt(project::nameOf(id)));
    m_outcome = new OutcomeBox(named("cbo", "Outcome"), tr("Result"),
                               tr("A result that the table is to show beside the factors"), this);
    for (QComboBox* box : {m_input, static_cast<QComboBox*>(m_outcome)}) {
        box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        box->setMinimumContentsLength(box == m_outcome ? 18 : 12);
        box->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        box->setMaxVisibleItems(25);
    }
    const auto label = [&](const QString& caption, QWidget* field) {
        auto* made = new QLabel(caption, this);
        made->setBuddy(field);
        second->addWidget(made);
        second->addWidget(field, 1);
    };
    label(tr("&Input:"), m_input);
    m_addInput = add(*second, "AddInput", tr("Add I&nput"),
                     tr("Gives the table a column of this input, to be changed in any scenario"),
                     &ScenariosPage::addInput);
    label(tr("&Result:"), m_outcome);
    m_addOutcome = add(*second, "AddOutcome", tr("Add Resul&t"),
                       tr("Gives the table a column of this result"), &ScenariosPage::addOutcome);
    m_removeColumn = add(*second, "RemoveColumn", tr("Remo&ve Column"),
                         tr("Takes the column with the focus out of the table; an input is then as "
                            "in the case everywhere"),
                         &ScenariosPage::removeColumn);
    fields().addLayout(second);
}

void ScenariosPage::makeShortcuts() {
    const auto on = [this](const QKeySequence& keys, auto action) {
        auto* shortcut = new QShortcut(keys, &tableView());
        shortcut->setContext(Qt::WidgetShortcut); // not in the editor of a cell
        connect(shortcut, &QShortcut::activated, this, action);
    };
    on(Qt::Key_Insert, [this] { add(); });
    on(Qt::CTRL | Qt::Key_D, [this] { duplicate(); });
    on(Qt::CTRL | Qt::Key_Delete, [this] { remove(); });
    on(Qt::ALT | Qt::Key_Up, [this] { move(-1); });
    on(Qt::ALT | Qt::Key_Down, [this] { move(1); });
    on(Qt::Key_Delete, [this] { clearCell(); });
}

void ScenariosPage::fill(bool another) {
    m_outcome->list(subject().current);
    if (m_outcome->currentIndex() < 0 && m_outcome->count() > 0) m_outcome->setCurrentIndex(0);
    if (another) {
        m_drafts.clear();
        for (const Scenario& scenario : settings().scenarios)
            m_drafts.push_back({scenario, {}});
        m_sheet.reset();
    }
    showButtons();
}

std::vector<FieldId> ScenariosPage::inputColumns() const {
    const auto& chosen = settings().scenarioInputs;
    std::vector<FieldId> columns;
    for (const FieldId id : project::RecordNumbers) {
        const bool wanted = std::find(chosen.begin(), chosen.end(), id) != chosen.end();
        const bool set = std::any_of(m_drafts.begin(), m_drafts.end(),
                                     [&](const ScenarioDraft& one) { return one.at(id); });
        if (wanted || set) columns.push_back(id);
    }
    return columns;
}

std::vector<Outcome> ScenariosPage::outcomeColumns() const {
    std::vector<Outcome> columns;
    const auto add = [&](const Outcome& outcome) {
        const bool known = std::any_of(columns.begin(), columns.end(), [&](const Outcome& one) {
            return one.name() == outcome.name();
        });
        if (!known) columns.push_back(outcome);
    };
    // What decides comes first. A scenario may have barriers that the case has not.
    add(defaultOutcome(subject().current));
    for (const Outcome& outcome : factorsOf(subject().current))
        add(outcome);
    for (const ScenarioDraft& draft : m_drafts)
        for (const Outcome& outcome : factorsOf(withScenario(subject().current, draft.scenario)))
            add(outcome);
    for (const std::string& name : settings().scenarioOutcomes)
        if (const auto outcome = Outcome::named(name)) add(*outcome);
    return columns;
}

ScenarioSheet ScenariosPage::sheet() const {
    ScenarioSheet sheet;
    sheet.base = subject().current;
    sheet.drafts = m_drafts;
    sheet.inputs = inputColumns();
    sheet.outcomes = outcomeColumns();
    return sheet;
}

Result<StudyPage::Compute> ScenariosPage::read() {
    const ScenarioSheet own = sheet();
    ScenarioSet set{{}, own.outcomes};
    for (const ScenarioDraft& draft : own.drafts)
        if (draft.refused.empty()) set.list.push_back(draft.scenario);
    const auto asked = set.list.empty() ? nullptr : asking(std::move(set));
    return Compute([own, asked, rounding = subject().RoundTELVOSF](const std::stop_token&) {
        auto result = scenarioResult(own, rounding);
        if (result) result->asked = asked;
        return result;
    });
}

void ScenariosPage::shown() {
    m_sheet = std::static_pointer_cast<const ScenarioSheet>(result().made);
    tableView().resizeColumnToContents(0);
    showButtons();
}

bool ScenariosPage::edits(std::size_t row, int column) {
    return m_sheet && m_sheet->draftAt(row) && (column == 0 || m_sheet->inputAt(column));
}

void ScenariosPage::addToMenu(QMenu& menu, std::size_t row) {
    if (!m_sheet || !m_sheet->draftAt(row)) return;
    menu.addSeparator();
    for (QPushButton* button : {m_add, m_duplicate, m_rename, m_delete, m_up, m_down})
        if (button->isEnabled())
            connect(menu.addAction(button->text()), &QAction::triggered, button,
                    &QPushButton::click);
}

std::optional<std::size_t> ScenariosPage::current() const {
    const auto row = table().currentRow();
    if (!row || *row < 1 || *row > m_drafts.size()) return std::nullopt;
    return *row - 1;
}

/// Why a scenario cannot have a name.
std::string ScenariosPage::refusedName(std::size_t which, const std::string& name) const {
    if (name.empty()) return "A scenario needs a name";
    for (std::size_t i = 0; i < m_drafts.size(); ++i)
        if (i != which && m_drafts[i].scenario.name == name)
            return "Two scenarios are called \"" + name + "\"";
    return {};
}

std::string ScenariosPage::freeName(const std::string& like) const {
    std::string name = like;
    for (int i = 2; !refusedName(m_drafts.size(), name).empty(); ++i)
        name = like + " " + std::to_string(i);
    return name;
}

void ScenariosPage::take(std::size_t row, int column, const std::string& text) {
    if (!m_sheet || row < 1 || row > m_drafts.size()) return;
    ScenarioDraft& draft = m_drafts[row - 1];
    if (column == 0) {
        const std::string name(trimmed(withoutControls(text)));
        const std::string why = refusedName(row - 1, name);
        draft.clear(std::nullopt);
        if (why.empty())
            draft.scenario.name = name;
        else
            draft.refused.push_back({std::nullopt, name, why});
    } else if (const auto id = m_sheet->inputAt(column)) {
        const auto value = scenarioValue(*id, text, subject().current.Units);
        // The column stays when its last value goes.
        auto& columns = settings().scenarioInputs;
        if (std::find(columns.begin(), columns.end(), *id) == columns.end()) columns.push_back(*id);
        draft.clear(*id);
        if (!value)
            draft.refused.push_back({*id, text, value.fault().message});
        else if (*value)
            draft.scenario.set.emplace_back(*id, **value);
    }
    changed(row - 1, column);
}

/// Keeps what was edited, shows it at once and computes it.
void ScenariosPage::changed(std::optional<std::size_t> currentDraft, int column) {
    auto& kept = settings().scenarios;
    kept.clear();
    for (const ScenarioDraft& draft : m_drafts)
        kept.push_back(draft.scenario);
    ScenarioSheet next = sheet();
    const auto names = [](const std::vector<Outcome>& outcomes) {
        std::vector<std::string> list;
        for (const Outcome& outcome : outcomes)
            list.push_back(outcome.name());
        return list;
    };
    if (m_sheet && names(m_sheet->outcomes) == names(next.outcomes)) {
        next.made = m_sheet->made;
        for (const ScenarioDraft& draft : m_drafts) {
            next.madeRow.emplace_back();
            for (std::size_t row = 1; row < next.made.rows.size(); ++row)
                if (next.made.rows[row].name == draft.scenario.name) next.madeRow.back() = row;
        }
    }
    m_sheet = std::make_shared<const ScenarioSheet>(std::move(next));
    tableView().setTable(scenarioTable(m_sheet));
    if (currentDraft)
        tableView().setCurrentIndex(
            tableView().model()->index(static_cast<int>(*currentDraft) + 1, column));
    showButtons();
    renew();
}

void ScenariosPage::add() {
    const std::size_t at = current() ? *current() + 1 : m_drafts.size();
    ScenarioDraft draft;
    int number = static_cast<int>(m_drafts.size()) + 1;
    do
        draft.scenario.name = "Scenario " + std::to_string(number++);
    while (!refusedName(m_drafts.size(), draft.scenario.name).empty());
    m_drafts.insert(m_drafts.begin() + static_cast<std::ptrdiff_t>(at), std::move(draft));
    changed(at, 0);
    tableView().setFocus();
}

void ScenariosPage::duplicate() {
    const auto which = current();
    if (!which) return;
    ScenarioDraft draft = m_drafts[*which];
    draft.clear(std::nullopt);
    draft.scenario.name = freeName("Copy of " + draft.scenario.name);
    m_drafts.insert(m_drafts.begin() + static_cast<std::ptrdiff_t>(*which + 1), std::move(draft));
    changed(*which + 1, 0);
    tableView().setFocus();
}

void ScenariosPage::rename() {
    const auto which = current();
    if (!which) return;
    const QModelIndex name = tableView().model()->index(static_cast<int>(*which) + 1, 0);
    tableView().setFocus();
    tableView().setCurrentIndex(name);
    tableView().edit(name);
}

void ScenariosPage::remove() {
    const auto which = current();
    if (!which) return;
    const ScenarioDraft& draft = m_drafts[*which];
    if (!draft.scenario.set.empty() &&
        !actions().confirm("Delete the scenario \"" + draft.scenario.name +
                           "\" with the inputs that it changes?"))
        return;
    m_drafts.erase(m_drafts.begin() + static_cast<std::ptrdiff_t>(*which));
    if (m_drafts.empty())
        changed(std::nullopt, 0);
    else
        changed(std::min(*which, m_drafts.size() - 1), 0);
}

void ScenariosPage::move(int by) {
    const auto which = current();
    if (!which) return;
    const auto to = static_cast<std::ptrdiff_t>(*which) + by;
    if (to < 0 || to >= static_cast<std::ptrdiff_t>(m_drafts.size())) return;
    std::swap(m_drafts[*which], m_drafts[static_cast<std::size_t>(to)]);
    changed(static_cast<std::size_t>(to), std::max(tableView().currentIndex().column(), 0));
}

void ScenariosPage::clearCell() {
    const QModelIndex at = tableView().currentIndex();
    const auto row = table().currentRow();
    if (row && at.column() > 0 && edits(*row, at.column())) take(*row, at.column(), {});
}

void ScenariosPage::addInput() {
    const auto id = project::fieldNamed(fromQt(m_input->currentData().toString()));
    if (!id) return;
    if (m_drafts.empty()) add();
    auto& columns = settings().scenarioInputs;
    if (std::find(columns.begin(), columns.end(), *id) == columns.end()) columns.push_back(*id);
    const auto all = inputColumns();
    const auto at = std::find(all.begin(), all.end(), *id) - all.begin();
    changed(current().value_or(0), static_cast<int>(at) + 1);
    tableView().setFocus();
}

void ScenariosPage::addOutcome() {
    const auto outcome = m_outcome->outcome();
    if (!outcome) return;
    auto& columns = settings().scenarioOutcomes;
    if (std::find(columns.begin(), columns.end(), outcome->name()) == columns.end())
        columns.push_back(outcome->name());
    changed(current(), 0);
}

void ScenariosPage::removeColumn() {
    if (!m_sheet) return;
    const int column = tableView().currentIndex().column();
    if (const auto id = m_sheet->inputAt(column)) {
        const bool set = std::any_of(m_drafts.begin(), m_drafts.end(),
                                     [&](const ScenarioDraft& one) { return one.at(*id); });
        if (set &&
            !actions().confirm("Take \"" + project::fullLabelOf(*id) + "\" out of all scenarios?"))
            return;
        for (ScenarioDraft& draft : m_drafts)
            draft.clear(*id);
        std::erase(settings().scenarioInputs, *id);
    } else if (const auto which = m_sheet->outcomeAt(column)) {
        std::erase(settings().scenarioOutcomes, m_sheet->outcomes[*which].name());
    }
    changed(current(), std::max(column - 1, 0));
}

void ScenariosPage::saveFiles() {
    std::vector<CaseChoice> cases;
    for (const ScenarioDraft& draft : m_drafts)
        cases.push_back(
            {draft.scenario.name,
             [current = withScenario(subject().current, draft.scenario)] { return current; }});
    actions().saveAsFiles(cases);
}

void ScenariosPage::showButtons() {
    const auto which = current();
    for (QPushButton* button : {m_duplicate, m_rename, m_delete})
        button->setEnabled(which.has_value());
    m_up->setEnabled(which && *which > 0);
    m_down->setEnabled(which && *which + 1 < m_drafts.size());
    const int column = tableView().currentIndex().column();
    const auto outcome = m_sheet ? m_sheet->outcomeAt(column) : std::nullopt;
    const auto& own = settings().scenarioOutcomes;
    m_removeColumn->setEnabled(
        m_sheet && (m_sheet->inputAt(column) ||
                    (outcome && std::find(own.begin(), own.end(),
                                          m_sheet->outcomes[*outcome].name()) != own.end())));
    const bool good = std::all_of(m_drafts.begin(), m_drafts.end(),
                                  [](const ScenarioDraft& one) { return one.refused.empty(); });
    m_save->setEnabled(!m_drafts.empty() && good);
}

} // namespace telvo::study::ui
