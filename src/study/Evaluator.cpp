// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/Evaluator.h"

#include "criteria/criteria.h"
#include "engine/driver.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <limits>
#include <utility>

namespace telvo::study {

using project::FieldId;

namespace {

constexpr std::size_t BlockSize = 1024; // what stays in the nearest cache
constexpr double None = std::numeric_limits<double>::quiet_NaN();
/// What is compared with the suggested factor looks at these.
constexpr std::array<std::string_view, 4> BarrierFactors = {
    "BarrierSF.development.first", "BarrierSF.development.second", "BarrierSF.retreat.first",
    "BarrierSF.retreat.second"};

bool isSpacing(const Variable& variable) {
    return variable == project::Field::XcutSpacing || variable == project::Field::EntryWidth;
}

} // namespace

Result<Evaluator> Evaluator::prepare(const project::ProjectCase& base,
                                     std::vector<Variable> variables, std::vector<Outcome> outcomes,
                                     int RoundTELVOSF) {
    std::vector<FieldId> inputs;
    std::vector<std::size_t> variableOf;
    for (std::size_t v = 0; v < variables.size(); ++v)
        for (const FieldId id : variables[v].fields(base.Input)) {
            if (std::find(inputs.begin(), inputs.end(), id) != inputs.end())
                return Fault{"An input that varies twice: " + project::nameOf(id),
                             variables[v].name()};
            inputs.push_back(id);
            variableOf.push_back(v);
        }
    const engine::Frame frame = engine::frameOf(base.Input, base.Units, engine::DevelopmentLoad);
    std::vector<std::string> quantities;
    bool asksForSuggested = false;
    for (const Outcome& outcome : outcomes) {
        for (std::string& name : outcome.quantities())
            quantities.push_back(std::move(name));
        asksForSuggested = asksForSuggested || outcome.asksForSuggestedOfPanel();
    }
    const std::size_t count = quantities.size();
    if (asksForSuggested)
        quantities.insert(quantities.end(), BarrierFactors.begin(), BarrierFactors.end());

    batch::Options options;
    options.RoundTELVOSF = RoundTELVOSF;
    options.automaticValuesFollow = true;
    auto batch = batch::Batch::prepare(base, inputs, quantities, options);
    if (!batch) return batch.fault();
    Evaluator evaluator(std::move(*batch));
    evaluator.m_base = base;
    evaluator.m_variables = std::move(variables);
    evaluator.m_outcomes = std::move(outcomes);
    evaluator.m_variableOf = std::move(variableOf);
    evaluator.m_frame = frame;
    evaluator.m_quantities = count;
    evaluator.m_rounding = RoundTELVOSF;
    evaluator.m_asksForSuggested = asksForSuggested;
    return evaluator;
}

std::optional<std::string_view> Evaluator::leftOut(std::span<const double> values) const {
    project::ProjectInput in = m_base.Input;
    for (std::size_t v = 0; v < m_variables.size(); ++v)
        if (isSpacing(m_variables[v]))
            project::set(in, m_variables[v].fields(in).front(), values[v]);
    for (const Variable& variable : m_variables)
        if (const auto why = variable.leftOut(in)) return why;
    return std::nullopt;
}

void Evaluator::spread(std::span<const double> values, std::span<double> inputs) const {
    for (std::size_t i = 0; i < m_variableOf.size(); ++i)
        inputs[i] = values[m_variableOf[i]];
}

project::ProjectCase Evaluator::caseOf(std::span<const double> values) const {
    std::vector<double> inputs(m_variableOf.size());
    spread(values, inputs);
    return m_batch.caseOf(inputs);
}

std::string Evaluator::whyNot(std::span<const double> values) const {
    if (const auto why = leftOut(values)) return std::string(*why);
    std::vector<double> inputs(m_variableOf.size());
    spread(values, inputs);
    return m_batch.whyNot(inputs);
}

double Evaluator::suggested(std::span<const double> values,
                            std::span<const double> barrierFactors) const {
    using namespace engine;
    const WorkingInputs in =
        workingInputs(caseOf(values).Input, m_base.Units, engine::DevelopmentLoad);
    criteria::FactorsOf<double> factors{};
    std::size_t next = 0;
    for (const int pass : {Development, Retreat})
        for (const int side : AllSides)
            factors.barrier[pass][side] = barrierFactors[next++];
    Scalar calc;
    return criteria::figures<Scalar>(calc, in, in, factors, m_rounding).panelLimit;
}

void Evaluator::block(std::size_t from, std::size_t cases, std::span<const double* const> in,
                      std::span<double* const> out, std::uint16_t* flags,
                      std::uint8_t* computed) const {
    std::vector<const double*> inputs;
    for (const std::size_t v : m_variableOf)
        inputs.push_back(in[v] + from);
    const std::size_t columns = m_quantities + (m_asksForSuggested ? BarrierFactors.size() : 0);
    std::vector<double> numbers(columns * cases);
    std::vector<double*> quantities;
    for (std::size_t q = 0; q < columns; ++q)
        quantities.push_back(numbers.data() + q * cases);
    static_assert(sizeof(batch::Status) == sizeof(std::uint8_t));
    auto* status = reinterpret_cast<batch::Status*>(computed + from);
    m_batch.compute(cases, inputs, quantities, flags ? flags + from : nullptr, status);

    const bool spacingVaries = std::any_of(m_variables.begin(), m_variables.end(), isSpacing);
    const auto columnOf = [&](project::Field field) {
        const auto at = std::find(m_batch.inputs().begin(), m_batch.inputs().end(), FieldId(field));
        return at == m_batch.inputs().end()
                   ? nullptr
                   : inputs[static_cast<std::size_t>(at - m_batch.inputs().begin())];
    };
    const double* const spacing = columnOf(project::Field::XcutSpacing);
    const double* const width = columnOf(project::Field::EntryWidth);
    std::vector<double> values(m_variables.size()), own(columns);
    project::ProjectInput record = m_base.Input;
    for (std::size_t i = 0; i < cases; ++i) {
        for (std::size_t v = 0; v < values.size(); ++v)
            values[v] = in[v][from + i];
        std::uint8_t& isComputed = computed[from + i];
        const bool narrow = spacingVaries && (spacing ? spacing[i] : m_base.Input.XcutSpacing) <=
                                                 (width ? width[i] : m_base.Input.EntryWidth);
        if (isComputed && narrow && leftOut(values)) {
            isComputed = 0;
            if (flags) flags[from + i] = 0;
        }
        if (!isComputed) {
            for (double* column : out)
                column[from + i] = None;
            continue;
        }
        for (std::size_t k = 0; k < m_variableOf.size(); ++k) // whether there is a barrier
            if (const FieldId id = m_batch.inputs()[k]; id.field == project::Field::BarrierFirstGob)
                record.BarrierFirstGob = inputs[k][i];
            else if (id.field == project::Field::BarrierSecondGob)
                record.BarrierSecondGob = inputs[k][i];
        for (std::size_t q = 0; q < columns; ++q)
            own[q] = quantities[q][i];
        const double limit =
            m_asksForSuggested ? suggested(values, std::span(own).subspan(m_quantities)) : 0;
        std::size_t next = 0;
        for (std::size_t o = 0; o < m_outcomes.size(); ++o) {
            const std::size_t parts = m_outcomes[o].parts();
            out[o][from + i] = m_outcomes[o].isDefined(m_frame, record)
                                   ? m_outcomes[o].from(std::span(own).subspan(next, parts),
                                                        m_frame, record, limit)
                                   : None;
            next += parts;
        }
    }
}

void Evaluator::compute(std::size_t cases, std::span<const double* const> in,
                        std::span<double* const> out, std::uint16_t* flags,
                        std::uint8_t* computed) const {
    assert(in.size() == m_variables.size() && out.size() == m_outcomes.size());
    for (std::size_t from = 0; from < cases; from += BlockSize)
        block(from, std::min(BlockSize, cases - from), in, out, flags, computed);
}

} // namespace telvo::study
