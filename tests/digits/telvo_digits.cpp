// SPDX-License-Identifier: GPL-3.0-or-later
//
// Every bit of the results of drawn cases as one number, to be compared between machines, systems and
// builds (scripts/same-digits):
//     telvo_digits COUNT [FOLDER]
// With a folder the cases are written there as case files, too.

#include "base/elementary.h"
#include "batch/batch.h"
#include "drawnCases.h"
#include "engine/driver.h"
#include "engine/quantities.h"
#include "project/CaseFile.h"

#include <charconv>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

using namespace telvo;

namespace {

class Sum {
  public:
    void add(std::uint64_t word) {
        m_sum = (m_sum ^ word) * 0x100000001b3U;
        m_sum ^= m_sum >> 29;
    }
    void add(double x) { add(x == x ? bitsOf(x) : 0U); }
    void add(std::string_view text) {
        for (const char c : text)
            add(static_cast<std::uint64_t>(static_cast<unsigned char>(c)));
    }
    void print(const char* what) const {
        std::printf("%-12s %016llx\n", what, static_cast<unsigned long long>(m_sum));
    }

  private:
    std::uint64_t m_sum = 0xcbf29ce484222325U;
};

void elementaryFunctions(unsigned count) {
    Sum sum;
    for (unsigned n = 0; n < count; ++n) {
        tests::Draw draw(n);
        sum.add(ln(draw.between(0, 40)));
        sum.add(ln(numberOf(draw.bits())));
        sum.add(sine(draw.between(-2.4, 2.4)));
        sum.add(tangent(draw.between(-2.4, 2.4)));
        sum.add(exponential(draw.between(-750, 715)));
        sum.add(inverseNormal(draw.between(0, 1)));
    }
    sum.print("elementary");
}

/// All numbers and flags of batches in which every input varies, but for the pillars of every other
/// panel.
void batchResults(unsigned count, batch::InstructionSet instructions, const char* name) {
    constexpr std::size_t Cases = 500; // of one panel
    Sum sum;
    for (unsigned panel = 0; panel < count / Cases; ++panel) {
        tests::Draw draw(panel + 0x100000000U);
        const project::ProjectCase base = tests::drawnCase(draw);
        const bool metric = base.Units != project::English;
        const auto names = batch::quantityNames(project::distanceCount(base.Input));
        std::vector<std::vector<double>> values(project::NumericInputs.size() + names.size(),
                                                std::vector<double>(Cases));
        std::vector<batch::InputColumn> in;
        std::vector<batch::OutputColumn> out;
        for (const project::FieldId id : project::NumericInputs) {
            if (panel % 2 != 0 && id.field == project::Field::XcutCenters) continue;
            auto& column = values[in.size()];
            for (double& x : column)
                x = tests::drawn(draw, id, metric);
            in.push_back({id, column});
        }
        for (const std::string& quantity : names)
            out.push_back({quantity, values[in.size() + out.size()]});
        std::vector<std::uint16_t> flags(Cases);
        std::vector<batch::Status> status(Cases);
        const batch::Options options{.RoundTELVOSF = draw.number(3),
                                     .automaticValuesFollow = draw.one(2),
                                     .instructions = instructions};
        if (const auto fault = batch::computeBatch(base, in, out, flags, status, options))
            sum.add(faultText(*fault));
        for (const batch::OutputColumn& column : out)
            for (const double x : column.values)
                sum.add(x);
        for (std::size_t i = 0; i < Cases; ++i)
            sum.add(std::uint64_t{flags[i]} << 8 | static_cast<std::uint64_t>(status[i]));
    }
    sum.print(name);
}

/// Returned: how many of the cases have results
unsigned engineResults(unsigned count, Sum& sum) {
    unsigned computed = 0;
    for (unsigned n = 0; n < count; ++n) {
        tests::Draw draw(n);
        const project::ProjectCase drawn = tests::drawnCase(draw);
        const auto prepared = engine::PrepareAnalysis(drawn.Input, drawn.Units);
        if (const auto* refusal = std::get_if<Refusal>(&prepared)) {
            sum.add(refusal->message);
            continue;
        }
        const auto results = engine::ComputeAnalysis(std::get<engine::WorkingInputs>(prepared));
        if (!results) {
            sum.add(faultText(results.fault()));
            continue;
        }
        ++computed;
        engine::visitQuantities(results.value(), [&](const char*, engine::Kind, const auto& field) {
            engine::visitNumbers(field, [&](auto x) { sum.add(static_cast<double>(x)); });
        });
    }
    return computed;
}

bool writeCases(unsigned count, const std::string& folder) {
    for (unsigned n = 0; n < count; ++n) {
        tests::Draw draw(n);
        project::ProjectCase drawn = tests::drawnCase(draw);
        char name[16];
        std::snprintf(name, sizeof name, "%06u.TLV", n);
        const auto text = project::writeCaseText(drawn);
        if (!text) continue; // a number that is none cannot be written
        std::FILE* file = std::fopen((folder + '/' + name).c_str(), "wb");
        if (!file) return false;
        const bool written =
            std::fwrite(text.value().data(), 1, text.value().size(), file) == text.value().size();
        if (std::fclose(file) != 0 || !written) return false;
    }
    return true;
}

} // namespace

int main(int argc, char** argv) {
    unsigned count = 0;
    const char* given = argc > 1 ? argv[1] : "";
    const char* end = given + std::strlen(given);
    const auto read = std::from_chars(given, end, count);
    if (argc < 2 || argc > 3 || read.ec != std::errc() || read.ptr != end) {
        std::fputs("usage: telvo_digits COUNT [FOLDER]\n", stderr);
        return 2;
    }
    if (argc == 3 && !writeCases(count, argv[2])) {
        std::fprintf(stderr, "telvo_digits: cannot write into %s\n", argv[2]);
        return 1;
    }
    elementaryFunctions(count);
    Sum sum;
    std::printf("cases        %u of %u have results\n", engineResults(count, sum), count);
    sum.print("engine");
    batchResults(count, batch::InstructionSet::OneByOne, "batch/scalar");
    batchResults(count, batch::InstructionSet::Baseline, "batch/base");
    if (batch::bestInstructionSet() == batch::InstructionSet::Avx2)
        batchResults(count, batch::InstructionSet::Avx2, "batch/avx2");
}
