// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/ui/studies/TornadoPage.h"

#include "base/numbers.h"
#include "base/text.h"
#include "base/ui/Form.h"
#include "base/ui/NumberEdit.h"
#include "base/ui/qtText.h"
#include "study/output/factors.h"
#include "study/questions/rangeText.h"
#include "study/ui/drawings/studyDrawings.h"
#include "study/ui/studies/choices.h"

#include <algorithm>
#include <QHBoxLayout>
#include <QItemSelectionModel>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <utility>

namespace telvo::study::ui {

using telvo::ui::fromQt;
using telvo::ui::NumberEdit;
using telvo::ui::toQt;

TornadoPage::TornadoPage(PageActions actions, QWidget* parent)
    : StudyPage("Tornado", tr(TornadoTitle), tr("tornado"), std::move(actions), parent) {
    makeFields();
    editCells();
}

TornadoPage::~TornadoPage() {
    tableView().setEditing({}); // the editor of a cell outlives the page's own part
}

bool TornadoPage::edits(std::size_t row, int column) {
    return m_tornado && row < m_tornado->bars.size() &&
           (column == TornadoRangeColumn || column == TornadoFromColumn ||
            column == TornadoToColumn);
}

void TornadoPage::editCells() {
    CellEditing editing;
    editing.sortable = true;
    editing.mayEdit = [this](std::size_t row, int column) { return edits(row, column); };
    editing.take = [this](std::size_t row, int column, const QString& text) {
        takeCell(m_tornado->bars[row].variable, column, fromQt(text));
    };
    const auto refused = [this](std::size_t row, int column) {
        return m_refusedCell && m_rangeFault && edits(row, column) &&
               m_refusedCell->column == column &&
               m_refusedCell->variable == m_tornado->bars[row].variable;
    };
    editing.refusal = [this, refused](std::size_t row, int column) {
        return refused(row, column) ? toQt(m_rangeFault->message) : QString();
    };
    editing.text = [this, refused](std::size_t row, int column) {
        return refused(row, column) ? std::optional(m_refusedCell->text) : std::nullopt;
    };
    tableView().setEditing(std::move(editing));
}

void TornadoPage::takeCell(const Variable& variable, int column, const std::string& text) {
    m_refusedCell.reset();
    m_rangeFault.reset();
    m_editedCell = {variable, column};
    m_input->setCurrentIndex(m_input->findData(toQt(variable.name())));
    Result<std::optional<Range>> range = std::optional<Range>();
    if (column == TornadoRangeColumn) {
        range = parseRange(text, variable, subject().current.Units);
    } else if (!trimmed(text).empty()) {
        Span span;
        for (const RangedInput& one : ranges())
            if (one.variable == variable) span = one.range.of(subject().current.Input, variable);
        const bool low = column == TornadoFromColumn;
        const std::string other = generalNumber(low ? span.high : span.low);
        range = parseRange(low ? text + " .. " + other : other + " .. " + text, variable,
                           subject().current.Units);
    }
    if (range) {
        if (*range && (*range)->form == Range::Form::Offset && column != TornadoRangeColumn)
            (*range)->form = Range::Form::Absolute; // a sign of a value
        setRange(*range);
        showRange();
        return;
    }
    m_rangeFault = Fault{range.fault().message, ""};
    m_refusedCell = {variable, column, toQt(text)};
    renew();
}

void TornadoPage::makeFields() {
    m_outcome = new OutcomeBox(named("cbo", "Outcome"), tr("Result"),
                               tr("The result that the inputs move"), this);
    m_look = new QComboBox(this);
    telvo::ui::describe(*m_look, named("cbo", "Look"), tr("Picture"),
                        tr("Bars beside each other, or all inputs as lines over one axis"));
    m_look->addItems({tr("Tornado"), tr("Spider")});
    auto* first = new QHBoxLayout;
    const auto add = [this](QHBoxLayout& row, const QString& caption, QWidget* field) {
        auto* label = new QLabel(caption, this);
        label->setBuddy(field);
        row.addWidget(label);
        row.addWidget(field);
    };
    add(*first, tr("&Result:"), m_outcome);
    add(*first, tr("P&icture:"), m_look);
    first->addStretch();
    fields().addLayout(first);

    m_input = new QComboBox(this);
    telvo::ui::describe(*m_input, named("cbo", "Input"), tr("Range of the input"),
                        tr("The input whose range is shown here; a click into its row chooses it"));
    m_form = new QComboBox(this);
    telvo::ui::describe(*m_form, named("cbo", "Form"), tr("Form of the range"),
                        tr("How the range is given"));
    m_low = makeNumber("Low", tr("Low end of the range"), tr("Where the range begins"));
    m_high = makeNumber("High", tr("High end of the range"), tr("Where the range ends"));
    for (NumberEdit* box : {m_low, m_high}) {
        disconnect(box, &QLineEdit::textEdited, nullptr, nullptr);
        connect(box, &QLineEdit::textEdited, this, [this] { readRange(); });
    }
    m_default = new QPushButton(tr("&Default"), this);
    telvo::ui::describe(*m_default, named("cmd", "Default"), tr("Default"),
                        tr("Gives this input its usual range again"));
    m_allDefault = new QPushButton(tr("&All Default"), this);
    telvo::ui::describe(*m_allDefault, named("cmd", "AllDefault"), tr("All Default"),
                        tr("Gives every input its usual range again"));
    auto* second = new QHBoxLayout;
    add(*second, tr("Ra&nge of:"), m_input);
    second->addWidget(m_form);
    add(*second, tr("&from"), m_low);
    add(*second, tr("&to"), m_high);
    for (QPushButton* button : {m_default, m_allDefault}) {
        button->setAutoDefault(false);
        second->addWidget(button);
    }
    second->addStretch();
    fields().addLayout(second);

    connect(m_outcome, &QComboBox::activated, this, [this] {
        if (const auto outcome = m_outcome->outcome()) settings().tornadoOutcome = outcome->name();
        renew();
    });
    connect(m_look, &QComboBox::activated, this, [this](int look) {
        settings().spider = look == 1;
        renew();
    });
    connect(m_input, &QComboBox::activated, this, [this] { showRange(); });
    connect(m_form, &QComboBox::activated, this, [this](int form) {
        // The same values in another form.
        const auto variable = variableNamed(fromQt(m_input->currentData().toString()));
        if (!variable) return;
        const double own = variable->of(subject().current.Input);
        for (const RangedInput& one : ranges()) {
            if (one.variable != *variable) continue;
            const Span span = one.range.of(subject().current.Input, *variable);
            Range range{static_cast<Range::Form>(form), span.low, span.high};
            if (range.form == Range::Form::Offset)
                range = {range.form, span.low - own, span.high - own};
            if (range.form == Range::Form::Percent) {
                if (own == 0)
                    range = {range.form, -10, 10};
                else
                    range = {range.form, 100 * (span.low - own) / own,
                             100 * (span.high - own) / own};
            }
            const auto rounded = [](double x) { return leadingValue(generalNumber(x, 6)); };
            range.low = rounded(range.low);
            range.high = rounded(range.high);
            setRange(range);
            showForm(range);
        }
    });
    connect(m_default, &QPushButton::clicked, this, [this] {
        setRange(std::nullopt);
        showRange();
    });
    connect(m_allDefault, &QPushButton::clicked, this, [this] {
        settings().ranges.clear();
        m_rangeFault.reset();
        showRange();
        renew();
    });
    connect(tableView().selectionModel(), &QItemSelectionModel::currentChanged, this, [this] {
        const auto row = tableView().currentRow();
        if (row && m_tornado && *row < m_tornado->bars.size())
            select(m_tornado->bars[*row].variable);
    });
    connect(&chart(), &StudyChart::pointed, this, [this](std::size_t id) {
        const std::size_t row = id / TornadoEnds;
        if (m_tornado && row < m_tornado->bars.size()) select(m_tornado->bars[row].variable);
    });
}

void TornadoPage::fill(bool another) {
    m_outcome->list(subject().current);
    const QSignalBlocker quiet(m_input);
    const QVariant chosen = m_input->currentData();
    m_input->clear();
    for (const RangedInput& one : defaultRanges(subject().current))
        m_input->addItem(toQt(one.variable.label()), toQt(one.variable.name()));
    m_input->setCurrentIndex(std::max(m_input->findData(chosen), another ? 1 : 0));
    if (!another && m_input->findData(chosen) >= 0)
        m_input->setCurrentIndex(m_input->findData(chosen));
    if (another) {
        m_rangeFault.reset();
        m_look->setCurrentIndex(settings().spider ? 1 : 0);
        if (settings().tornadoOutcome)
            m_outcome->choose(*settings().tornadoOutcome);
        else if (m_outcome->count() > 0)
            m_outcome->setCurrentIndex(0);
    }
    if (!m_low->hasFocus() && !m_high->hasFocus()) showRange();
}

std::vector<RangedInput> TornadoPage::ranges() const {
    auto all = defaultRanges(subject().current);
    for (RangedInput& one : all)
        for (const RangedInput& own : settings().ranges)
            if (own.variable == one.variable) one = own;
    return all;
}

void TornadoPage::select(const Variable& variable) {
    const int at = m_input->findData(toQt(variable.name()));
    if (at < 0 || at == m_input->currentIndex() || m_rangeFault) return;
    m_input->setCurrentIndex(at);
    showRange();
}

void TornadoPage::showForm(const Range& range) {
    m_low->setText(toQt(generalNumber(range.low, 8)));
    m_high->setText(toQt(generalNumber(range.high, 8)));
    m_form->setCurrentIndex(static_cast<int>(range.form));
}

void TornadoPage::showRange() {
    const auto variable = variableNamed(fromQt(m_input->currentData().toString()));
    if (!variable) return;
    const std::string unit(variable->unit(subject().current.Units));
    m_form->clear();
    m_form->addItems({tr("+- %"), unit.empty() ? tr("+- value") : "+- " + toQt(unit),
                      unit.empty() ? tr("low .. high") : tr("low .. high, %1").arg(toQt(unit))});
    for (const RangedInput& one : ranges())
        if (one.variable == *variable) {
            showForm(one.range);
            m_default->setEnabled(one.edited);
        }
    if (m_rangeFault) {
        m_rangeFault.reset();
        renew();
    }
    m_allDefault->setEnabled(!settings().ranges.empty());
}

void TornadoPage::readRange() {
    m_refusedCell.reset();
    const Result<double> low = numberIn(*m_low), high = numberIn(*m_high);
    m_rangeFault.reset();
    if (!low) m_rangeFault = low.fault();
    if (!m_rangeFault && !high) m_rangeFault = high.fault();
    if (!m_rangeFault && !(*low < *high))
        m_rangeFault = Fault{"A range goes from a smaller to a greater number, not from " +
                                 generalNumber(*low) + " to " + generalNumber(*high),
                             fromQt(m_high->objectName())};
    if (m_rangeFault) {
        renewSoon();
        return;
    }
    setRange(Range{static_cast<Range::Form>(m_form->currentIndex()), *low, *high});
}

void TornadoPage::setRange(const std::optional<Range>& range) {
    const auto variable = variableNamed(fromQt(m_input->currentData().toString()));
    if (!variable) return;
    m_rangeFault.reset();
    auto& edited = settings().ranges;
    std::erase_if(edited, [&](const RangedInput& one) { return one.variable == *variable; });
    if (range) edited.push_back({*variable, *range, true});
    m_default->setEnabled(range.has_value());
    m_allDefault->setEnabled(!edited.empty());
    renewSoon();
}

Result<StudyPage::Compute> TornadoPage::read() {
    if (m_rangeFault) return *m_rangeFault;
    const auto outcome = m_outcome->outcome();
    if (!outcome) return Fault{"Choose a result", fromQt(m_outcome->objectName())};
    const TornadoRequest request{*outcome, ranges()};
    return Compute([request, asked = asking(request), base = subject().current,
                    spider = m_look->currentIndex() == 1, rounding = subject().RoundTELVOSF](
                       const std::stop_token&) -> Result<StudyResult> {
        auto made = tornado(base, request);
        if (!made) return made.fault();
        StudyResult result = tornadoResult(
            std::make_shared<const TornadoAnswer>(TornadoAnswer{base, request, std::move(*made)}),
            spider, suggestedFor(base, request.outcome, rounding));
        result.asked = asked;
        return result;
    });
}

void TornadoPage::shown() {
    const auto answer = std::static_pointer_cast<const TornadoAnswer>(result().made);
    m_tornado = {answer, &answer->made};
    m_refusedCell.reset();
    const auto edited = std::exchange(m_editedCell, std::nullopt);
    for (std::size_t row = 0; edited && row < m_tornado->bars.size(); ++row)
        if (m_tornado->bars[row].variable == edited->first)
            tableView().goTo(row, edited->second); // wherever its bar is now
}

} // namespace telvo::study::ui
