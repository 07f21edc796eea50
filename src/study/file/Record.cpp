// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/file/Record.h"

#include "base/text.h"
#include "project/CaseFile.h"
#include "study/file/recordedJson.h"
#include "study/file/sha256.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace telvo::study {

namespace {

constexpr std::string_view RecordTag = "TELVO study record";
constexpr int RecordVersion = 1;
/// Larger tables are not kept in the record.
constexpr std::size_t MostTableBytes = std::size_t{1} << 20;

/// A table in CSV as cells.
std::vector<std::vector<std::string>> cellsOf(std::string_view csv) {
    std::vector<std::vector<std::string>> rows;
    std::vector<std::string> row(1);
    bool quoted = false;
    for (std::size_t i = 0; i < csv.size(); ++i) {
        const char c = csv[i];
        if (c == '"') {
            if (quoted && csv.substr(i + 1, 1) == "\"")
                row.back() += csv[++i];
            else
                quoted = !quoted;
        } else if (c == ',' && !quoted) {
            row.emplace_back();
        } else if (c == '\n' && !quoted) {
            rows.push_back(std::exchange(row, std::vector<std::string>(1)));
        } else if (c != '\r' || quoted) {
            row.back() += c;
        }
    }
    return rows;
}

/// The first place at which two tables differ.
std::string firstDifference(std::string_view recorded, std::string_view now) {
    const auto before = cellsOf(recorded), after = cellsOf(now);
    const std::vector<std::string> none;
    for (std::size_t row = 0; row < std::max(before.size(), after.size()); ++row) {
        const auto& a = row < before.size() ? before[row] : none;
        const auto& b = row < after.size() ? after[row] : none;
        for (std::size_t i = 0; i < std::max(a.size(), b.size()); ++i) {
            const std::string was = i < a.size() ? a[i] : "", is = i < b.size() ? b[i] : "";
            if (was == is && i < a.size() && i < b.size()) continue;
            if (row == 0) return "the columns differ: \"" + was + "\", now \"" + is + "\"";
            const std::string column =
                !before.empty() && i < before[0].size() ? before[0][i] : std::to_string(i + 1);
            return "row " + std::to_string(row) + ", column " + column + ": there " +
                   (row < before.size() ? "\"" + was + "\"" : "no such row") + ", now " +
                   (row < after.size() ? "\"" + is + "\"" : "no such row");
        }
    }
    return "the tables are written in different ways";
}

std::string digestOf(const ResultTable& table) {
    Sha256 sum;
    writeCsv(table, [&](std::string_view piece) {
        sum.add(piece);
        return true;
    });
    return sum.digits();
}

void addTally(Tally& all, const Tally& one) {
    all.runs += one.runs;
    for (const Tally::Left& left : one.left)
        all.leaveOut(left.message, left.runs);
}

} // namespace

Result<RecordedStudy> recorded(const Study& study, std::string name,
                               std::span<const NamedCase> cases) {
    RecordedStudy own{std::move(name), studyText(study), {}};
    for (const auto& [file, current] : cases) {
        project::ProjectCase copy = current;
        auto text = project::writeCaseText(copy);
        if (!text) return text.fault();
        own.cases.push_back({file, std::move(*text)});
    }
    return own;
}

Result<std::pair<Study, std::vector<NamedCase>>> restored(const RecordedStudy& recorded) {
    auto study = readStudyText(recorded.text, recorded.name);
    if (!study) return study.fault();
    std::vector<NamedCase> cases;
    for (const RecordedCase& of : recorded.cases) {
        project::ProjectCase current = project::newCase(project::English);
        const project::CaseReading reading = project::readCaseText(of.text, of.name, current);
        if (reading.fault) return *reading.fault;
        current.FileName = of.name;
        cases.emplace_back(of.name, std::move(current));
    }
    if (cases.size() != filesOf(*study).size())
        return Fault{"the record does not have all cases of the study", recorded.name};
    return std::pair(std::move(*study), std::move(cases));
}

TableDigits TableDigits::of(const ResultTable& table) {
    TableDigits digits;
    writeCsv(table, [&](std::string_view piece) {
        digits.add(piece);
        return true;
    });
    return digits;
}

void TableDigits::add(std::string_view piece) {
    m_sum.add(piece);
    m_kept = m_kept && m_text.size() + piece.size() <= MostTableBytes;
    if (m_kept) m_text += piece;
}

void TableDigits::into(RunRecord& record, std::size_t rows) {
    record.table = m_kept ? std::move(m_text) : std::string();
    record.rows = rows;
    record.digest = m_sum.digits();
}

std::string recordText(const RunRecord& record) {
    std::string text;
    JsonWriter json(text);
    json.beginObject();
    json.member("record", std::string(RecordTag) + " " + std::to_string(RecordVersion));
    json.member("program", record.program);
    json.member("moduleBuild", record.moduleBuild);
    json.key("studies");
    json.beginArray();
    for (const RecordedStudy& study : record.studies)
        writeStudy(json, study);
    json.endArray();
    json.key("counts");
    json.beginObject();
    json.key("runs");
    json.number(record.tally.runs);
    json.key("notComputed");
    json.number(record.tally.notComputed());
    json.key("messages");
    json.beginArray();
    for (const Tally::Left& left : record.tally.left) {
        json.beginObject();
        json.member("message", left.message);
        json.key("runs");
        json.number(left.runs);
        json.endObject();
    }
    json.endArray();
    json.endObject();
    json.key("result");
    json.beginObject();
    json.key("rows");
    json.number(record.rows);
    json.member("sha256", record.digest);
    json.member("file", record.file);
    json.member("fileSha256", record.fileDigest);
    json.member("table", record.table);
    json.endObject();
    json.key("made");
    json.beginObject();
    json.member("time", record.time);
    json.member("machine", record.machine);
    json.key("threads");
    json.number(static_cast<std::size_t>(record.threads));
    json.key("seconds");
    json.number(record.seconds);
    json.endObject();
    json.endObject();
    return text + "\n";
}

Result<RunRecord> readRecord(std::string_view bytes, const std::string& name) {
    const Json root = Json::parse(bytes.begin(), bytes.end(), nullptr, false);
    const std::string kind =
        root.is_object() && root.contains("record") && root["record"].is_string()
            ? root["record"].get<std::string>()
            : std::string();
    if (!kind.starts_with(RecordTag)) return Fault{"is no record of a study", name};
    if (kind != std::string(RecordTag) + " " + std::to_string(RecordVersion))
        return Fault{"is a \"" + excerpt(asUtf8(kind)) + "\", which this program does not read",
                     name};
    std::optional<Fault> fault;
    RunRecord record;
    const JsonMembers members(root, "", fault);
    record.program = members.text("program");
    record.moduleBuild = members.text("moduleBuild");
    members.each("studies",
                 [&](const JsonMembers& one) { record.studies.push_back(one.recordedStudy()); });
    const JsonMembers counts = members.below("counts");
    record.tally.runs = counts.count("runs");
    counts.each("messages", [&](const JsonMembers& one) {
        record.tally.left.push_back({one.text("message"), one.count("runs")});
    });
    const JsonMembers result = members.below("result");
    record.rows = result.count("rows");
    record.digest = result.text("sha256");
    record.file = result.text("file");
    record.fileDigest = result.text("fileSha256");
    record.table = result.text("table");
    if (fault) return Fault{fault->message, name};
    if (record.studies.empty()) return Fault{"the record has no study", name};
    if (!record.table.empty() && sha256Of(record.table) != record.digest)
        return Fault{"result.table: was changed, its SHA-256 is another one", name};
    return record;
}

ResultTable joinedTable(std::vector<std::pair<std::string, ResultTable>> tables) {
    if (tables.size() == 1) return std::move(tables.front().second);
    return joined(std::move(tables), "file");
}

Result<Verified> verify(const RunRecord& record, std::string_view exported, unsigned threads) {
    Verified verified;
    std::vector<std::pair<std::string, ResultTable>> tables;
    for (const RecordedStudy& one : record.studies) {
        const auto read = restored(one);
        if (!read) return read.fault();
        auto output = runStudy(read->first, read->second, threads);
        if (!output) return Fault{faultText(output.fault()), one.name};
        addTally(verified.tally, output->tally);
        tables.emplace_back(one.name, std::move(output->table));
    }
    const ResultTable table = joinedTable(std::move(tables));
    verified.same = digestOf(table) == record.digest;
    const bool isTable = record.fileDigest == record.digest;
    if (verified.same && !exported.empty() && sha256Of(exported) != record.fileDigest) {
        verified.same = false;
        verified.difference =
            record.file + " is not what was written: " +
            (isTable ? firstDifference(exported, csvText(table)) : "its SHA-256 is another one");
    }
    if (verified.same || !verified.difference.empty()) return verified;
    const std::string_view before =
        record.table.empty() && isTable ? exported : std::string_view(record.table);
    if (before.empty())
        verified.difference = "the record keeps only the SHA-256 of its " +
                              std::to_string(record.rows) + " rows; now there are " +
                              std::to_string(table.rows);
    else
        verified.difference = firstDifference(before, csvText(table));
    return verified;
}

} // namespace telvo::study
