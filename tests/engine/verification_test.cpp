// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/quantityNames.h"
#include "project/CaseFile.h"
#include "testCases.h"

#include <cmath>
#include <filesystem>
#include <json-c/json.h>
#include <map>
#include <memory>
#include <set>

namespace telvo::engine {
namespace {

const std::string Folder = TELVO_CASES_DIR "/verification/";

/// Every number under its path, such as "AMZLoad.retreat.front" or "PillarArea.2".
using Numbers = std::map<std::string, double>;

void readNumbers(const std::string& path, json_object* json, Numbers& into) {
    if (json_object_is_type(json, json_type_object)) {
        json_object_object_foreach(json, key, element)
            readNumbers(path.empty() ? key : path + "." + key, element, into);
    } else if (json_object_is_type(json, json_type_array)) {
        for (std::size_t i = 0; i < json_object_array_length(json); ++i)
            readNumbers(path + "." + std::to_string(i + 1), json_object_array_get_idx(json, i),
                        into);
    } else {
        into[path] = json_object_get_double(json);
    }
}

TEST(Verification, EveryQuantityAgreesWithTheIndependentCalculation) {
    const std::unique_ptr<json_object, int (*)(json_object*)> expected(
        json_object_from_file((Folder + "expected.json").c_str()), json_object_put);
    ASSERT_TRUE(expected) << json_util_get_last_err();
    std::set<std::string> files;
    std::set<std::string> quantities;
    for (std::size_t n = 0; n < json_object_array_length(expected.get()); ++n) {
        json_object* entry = json_object_array_get_idx(expected.get(), n);
        const std::string file = json_object_get_string(json_object_object_get(entry, "file"));
        SCOPED_TRACE(file);
        files.insert(file);
        auto read = project::newCase(English);
        const auto reading = project::readCaseFile(Folder + file, read);
        ASSERT_TRUE(reading.accepted && !reading.fault);

        const AnalysisResults r = computed(read.Input, read.Units);
        Numbers ours{{"AnalysisCase", r.AnalysisCase}};
        visitQuantities(r, [&](const char* name, Kind, const auto& field) {
            flatten(name, field, MaxPillars,
                    [&](const std::string& path, double value) { ours[path] = value; });
        });
        Numbers theirs;
        readNumbers("", json_object_object_get(entry, "results"), theirs);

        for (const auto& [path, value] : theirs) {
            const std::string quantity = path.substr(0, path.find('.'));
            quantities.insert(quantity);
            EXPECT_TRUE(ours.contains(path)) << path << " is missing from the program";
            EXPECT_NEAR(ours[path], value, tolerance(quantity) * std::abs(value)) << path;
        }
        // Not listed there: pillars beyond the last and what does not arise. It has to be 0 here.
        for (const auto& [path, value] : ours)
            EXPECT_TRUE(value == 0 || theirs.contains(path)) << path << " = " << value;
    }
    const AnalysisResults all;
    visitQuantities(all, [&](const char* name, Kind, const auto&) {
        EXPECT_TRUE(quantities.contains(name)) << name << " was compared in no case";
    });
    for (const auto& item : std::filesystem::directory_iterator(Folder))
        EXPECT_TRUE(item.path().extension() != ".TLV" ||
                    files.contains(item.path().filename().string()))
            << item.path() << " has no expected numbers";
}

} // namespace
} // namespace telvo::engine
