// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/batch.h"

#include "criteria/criteria.h"
#include "engine/diagnosis.h"
#include "engine/driver.h"
#include "engine/InputsOf.h"
#include "engine/quantities.h"
#include "engine/quantityNames.h"
#include "project/automatic.h"
#include "project/checks.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cmath>
#include <numeric>

namespace telvo::batch {

using project::Field, project::FieldId;

namespace {

/// The quantities of Wanted::Study in the order of its slots; the first two are those of Factors.
constexpr std::array<std::string_view, 17> StudyQuantities = {"TELVOSF.development",
                                                              "TELVOSF.retreat",
                                                              "BarrierSF.development.first",
                                                              "BarrierSF.development.second",
                                                              "BarrierSF.retreat.first",
                                                              "BarrierSF.retreat.second",
                                                              "RemnantSF.first",
                                                              "RemnantSF.second",
                                                              "LTRANSREM.development.first",
                                                              "LTRANSREM.development.second",
                                                              "LTRANSREM.retreat.first",
                                                              "LTRANSREM.retreat.second",
                                                              "LTRANSBAR.development.first",
                                                              "LTRANSBAR.development.second",
                                                              "LTRANSBAR.retreat.first",
                                                              "LTRANSBAR.retreat.second",
                                                              "ArchFactor"};
constexpr std::size_t FactorQuantities = 2;

bool isSinglePrecision(FieldId id) {
    return id.field == Field::ArchFactor || id.field == Field::WidthC || id.field == Field::WidthD;
}

bool isAngle(FieldId id) {
    return project::kindOf(id) == project::FieldKind::Angle;
}

std::size_t placeAmongInputs(FieldId id) {
    const auto place = std::find(project::NumericInputs.begin(), project::NumericInputs.end(), id);
    return static_cast<std::size_t>(place - project::NumericInputs.begin());
}

/// Place of a name; the size of the list for an unknown one.
template <typename Names>
std::size_t placeOf(const Names& names, std::string_view name) {
    return static_cast<std::size_t>(std::find(names.begin(), names.end(), name) - names.begin());
}

/// A case that is not computed.
void leaveOut(const Columns& columns, std::size_t i) {
    for (std::size_t j = 0; j < columns.outputs; ++j)
        columns.out[j][i] = 0;
    if (columns.flags) columns.flags[i] = 0;
    columns.status[i] = 0;
}

} // namespace

InstructionSet bestInstructionSet() {
#if defined(TELVO_BATCH_AVX2)
    if (__builtin_cpu_supports("avx2")) return InstructionSet::Avx2;
#endif
    return InstructionSet::Baseline;
}

std::vector<std::string> quantityNames(int pillars) {
    std::vector<std::string> names;
    const engine::AnalysisResults none;
    engine::visitQuantities(none, [&](const char* name, engine::Kind, const auto& field) {
        engine::flatten(name, field, pillars,
                        [&](const std::string& path, auto) { names.push_back(path); });
    });
    return names;
}

Result<Batch> Batch::prepare(const project::ProjectCase& base, const std::vector<FieldId>& inputs,
                             const std::vector<std::string>& quantities, const Options& options) {
    Batch batch;
    batch.m_base = base;
    batch.m_inputs = inputs;
    batch.m_options = options;
    Columns& c = batch.m_columns;
    for (const FieldId id : inputs) {
        const std::string name = project::nameOf(id);
        const std::size_t place = placeAmongInputs(id);
        if (place == MostInputs) return Fault{"An input that cannot vary: " + name, name};
        if (std::count(inputs.begin(), inputs.end(), id) > 1)
            return Fault{"An input that varies twice: " + name, name};
        c.places[c.inputs] = place;
        c.single[c.inputs] = isSinglePrecision(id);
        ++c.inputs;
        c.anglesVary = c.anglesVary || isAngle(id);
    }

    const project::ProjectInput& in = base.Input;
    c.frame = engine::frameOf(in, base.Units, options.previousAnalysisCase);
    c.entries = in.NumberEntries;
    c.frame.EqualPillars = std::none_of(inputs.begin(), inputs.end(),
                                        [](FieldId id) { return id.field == Field::XcutCenters; });
    for (int i = 2; i <= c.frame.NumberPillars; ++i)
        c.frame.EqualPillars = c.frame.EqualPillars && in.XcutCenters[i] == in.XcutCenters[1];
    c.AMZ = in.AMZ;
    c.Arch = in.Arch;
    c.rounding = options.RoundTELVOSF;
    const auto varies = [&](Field field) {
        return std::find(inputs.begin(), inputs.end(), FieldId(field)) != inputs.end();
    };
    const bool depthVaries = options.automaticValuesFollow && varies(Field::DepthCover);
    const bool widthVaries = options.automaticValuesFollow &&
                             std::any_of(inputs.begin(), inputs.end(),
                                         [](FieldId id) { return id.field == Field::XcutCenters; });
    c.breadthFollows = depthVaries && in.AMZ == 1 && !varies(Field::BreadthAMZ);
    c.archFactorFollows =
        (depthVaries || widthVaries) && in.Arch != 0 && !varies(Field::ArchFactor);
    for (std::size_t i = 0; i < MostInputs; ++i) {
        c.fields[i] = project::NumericInputs[i];
        c.uniform[i] = project::get(in, c.fields[i]);
        batch.m_oneByOne = batch.m_oneByOne || !engine::isTame(c.uniform[i]);
    }

    const std::vector<std::string> every = quantityNames(engine::MaxPillars);
    const std::vector<std::string> known = quantityNames(c.frame.NumberPillars);
    for (const std::string& name : quantities) {
        if (placeOf(known, name) == known.size())
            return Fault{"No quantity of this case: " + name, name};
        batch.m_everySlot.push_back(placeOf(every, name));
        const std::size_t study = placeOf(StudyQuantities, name);
        if (study == StudyQuantities.size())
            batch.m_wanted = Wanted::Everything;
        else if (study >= FactorQuantities)
            batch.m_wanted = std::max(batch.m_wanted, Wanted::Study);
    }
    if (quantities.size() > MostOutputs)
        return Fault{"More quantities than a case has: " + std::to_string(quantities.size()), ""};
    const auto slotOf = [&](std::size_t i) {
        return batch.m_wanted == Wanted::Everything ? batch.m_everySlot[i]
                                                    : placeOf(StudyQuantities, quantities[i]);
    };
    batch.m_order.resize(quantities.size());
    std::iota(batch.m_order.begin(), batch.m_order.end(), std::size_t{0});
    std::stable_sort(batch.m_order.begin(), batch.m_order.end(),
                     [&](std::size_t a, std::size_t b) { return slotOf(a) < slotOf(b); });
    c.outputs = quantities.size();
    for (std::size_t i = 0; i < c.outputs; ++i)
        c.slots[i] = slotOf(batch.m_order[i]);
    batch.settleLimits();
    return batch;
}

/// The requirements that hang on a number that varies are looked at case by case; if one of the
/// others is missed, every case is left to the road of one case, which says so.
void Batch::settleLimits() {
    Columns& c = m_columns;
    const auto varies = [&](FieldId id) {
        if (id.field == Field::BreadthAMZ && c.breadthFollows) return true;
        if (id.field == Field::ArchFactor && c.archFactorFollows) return true;
        return std::find(m_inputs.begin(), m_inputs.end(), id) != m_inputs.end();
    };
    const auto settle = [&](const project::Requirement& row, FieldId id) {
        const project::Bound& bound = row.bound;
        const auto other = bound.other();
        if (!varies(id) && !(other && varies(*other))) {
            const double otherNumber = other ? project::get(m_base.Input, *other) : 0;
            m_oneByOne = m_oneByOne || bound.refuses(project::get(m_base.Input, id), otherNumber);
            return;
        }
        assert(c.limitCount < std::size(c.limits));
        Limit& limit = c.limits[c.limitCount++];
        limit.kind = bound.above  ? Limit::AboveOther
                     : bound.upTo ? Limit::UpToOther
                     : bound.open ? Limit::Above
                                  : Limit::Within;
        limit.field = id;
        limit.other = other ? FieldId(*other) : id;
        limit.low = bound.low;
        limit.high = bound.high;
    };
    for (const project::Requirement& row : project::analysisRequirements()) {
        if (!project::counts(row.use, m_base.Input)) continue;
        if (row.field != Field::XcutCenters)
            settle(row, row.field);
        else
            for (int i = 1; i <= c.frame.NumberPillars; ++i)
                settle(row, FieldId(row.field, i));
    }
}

project::ProjectInput Batch::recordOf(std::span<const double> values) const {
    project::ProjectInput one = m_base.Input;
    for (std::size_t j = 0; j < m_inputs.size(); ++j)
        project::set(one, m_inputs[j], values[j]);
    for (const Field field : {Field::BreadthAMZ, Field::ArchFactor})
        if (field == Field::BreadthAMZ ? m_columns.breadthFollows : m_columns.archFactorFollows)
            if (const auto value = project::automaticValue(one, m_base.Units, field))
                project::set(one, field, *value);
    return one;
}

project::ProjectCase Batch::caseOf(std::span<const double> values) const {
    project::ProjectCase one = m_base;
    one.Input = recordOf(values);
    return one;
}

std::string Batch::whyNot(std::span<const double> values) const {
    const project::ProjectCase one = caseOf(values);
    const auto prepared =
        engine::PrepareAnalysis(one.Input, one.Units, m_options.previousAnalysisCase);
    if (const auto* refusal = std::get_if<Refusal>(&prepared)) return refusal->message;
    const auto results = engine::ComputeAnalysis(std::get<engine::WorkingInputs>(prepared));
    return results ? std::string() : faultText(results.fault());
}

/// The road of one case, for what packs do not take.
void Batch::computeOne(const Columns& columns, std::size_t i) const {
    std::array<double, MostInputs> values{};
    for (std::size_t j = 0; j < columns.inputs; ++j)
        values[j] = columns.in[j][i];
    leaveOut(columns, i);

    const project::ProjectInput one = recordOf({values.data(), columns.inputs});
    if (project::isRefusedBeforeAnalysis(one)) return;
    const engine::WorkingInputs in =
        engine::workingInputs(one, m_base.Units, m_options.previousAnalysisCase);
    if (engine::isImpossible(in)) return;
    engine::RunResults run;
    engine::AnalysisResults results;
    if (engine::computePasses(in, run, results).cause != Stop::None) return;
    std::array<double, MostOutputs> numbers{};
    std::size_t count = 0;
    engine::visitQuantities(results, [&](const char*, engine::Kind, const auto& field) {
        engine::visitNumbers(field, [&](double value) { numbers[count++] = value; });
    });
    for (std::size_t j = 0; j < columns.outputs; ++j)
        columns.out[j][i] = numbers[m_everySlot[m_order[j]]];
    if (columns.flags)
        columns.flags[i] = criteria::assess(in, one, results, m_options.RoundTELVOSF).flags;
    columns.status[i] = 1;
}

void Batch::compute(std::size_t cases, std::span<const double* const> in,
                    std::span<double* const> out, std::uint16_t* flags, Status* status) const {
    assert(in.size() == m_inputs.size() && out.size() == m_everySlot.size());
    Columns columns = m_columns;
    for (std::size_t j = 0; j < in.size(); ++j)
        columns.in[j] = in[j];
    for (std::size_t j = 0; j < out.size(); ++j)
        columns.out[j] = out[m_order[j]];
    columns.flags = flags;
    static_assert(sizeof(Status) == sizeof(std::uint8_t));
    columns.status = reinterpret_cast<std::uint8_t*>(status);

    const bool packs = !m_oneByOne && m_options.instructions != InstructionSet::OneByOne;
    const bool wide = m_options.instructions == InstructionSet::Avx2;
    const std::size_t lanes = wide ? 4 : 2;
    const std::size_t whole = packs ? cases / lanes * lanes : 0;
    const Wanted wanted = flags ? std::max(m_wanted, Wanted::Study) : m_wanted;
    if (whole > 0) {
#if defined(TELVO_BATCH_AVX2)
        if (wide)
            computeAvx2(columns, wanted, 0, whole);
        else
#endif
            computeBaseline(columns, wanted, 0, whole);
        for (std::size_t i = 0; i < whole; ++i) {
            if ((columns.status[i] & 2) != 0)
                computeOne(columns, i);
            else if (columns.status[i] == 0)
                leaveOut(columns, i);
        }
    }
    for (std::size_t i = whole; i < cases; ++i)
        computeOne(columns, i);
}

std::optional<Fault> computeBatch(const project::ProjectCase& base, std::span<const InputColumn> in,
                                  std::span<const OutputColumn> out, std::span<std::uint16_t> flags,
                                  std::span<Status> status, const Options& options) {
    const std::size_t cases = status.size();
    const auto wrongLength = [cases](const std::string& name, std::size_t length) {
        return Fault{"Column " + name + " has " + std::to_string(length) + " values for " +
                         std::to_string(cases) + " cases",
                     name};
    };
    std::vector<FieldId> inputs;
    std::vector<std::string> quantities;
    std::vector<const double*> from;
    std::vector<double*> to;
    for (const InputColumn& column : in) {
        if (column.values.size() != cases)
            return wrongLength(project::nameOf(column.field), column.values.size());
        inputs.push_back(column.field);
        from.push_back(column.values.data());
    }
    for (const OutputColumn& column : out) {
        if (column.values.size() != cases)
            return wrongLength(column.quantity, column.values.size());
        quantities.push_back(column.quantity);
        to.push_back(column.values.data());
    }
    if (!flags.empty() && flags.size() != cases) return wrongLength("flags", flags.size());
    const auto batch = Batch::prepare(base, inputs, quantities, options);
    if (!batch) return batch.fault();
    batch->compute(cases, from, to, flags.empty() ? nullptr : flags.data(), status.data());
    return std::nullopt;
}

} // namespace telvo::batch
