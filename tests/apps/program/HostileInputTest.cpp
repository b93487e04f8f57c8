// The program against hostile input, as a user meets it: malformed files that must not crash it,
// impossible analyses that must not come back as results, and messages that must name the cause.
#include "ProgramRun.h"

#include <gtest/gtest.h>
#include <rapidjson/document.h>
#include <rapidjson/error/en.h>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

using brinecast_test::brinecast;
using brinecast_test::ProgramRun;
using brinecast_test::readFile;
using brinecast_test::ScratchDirectory;

namespace {

const std::string kData = BRINECAST_PROGRAM_TEST_DATA;
const std::string kExamples = BRINECAST_EXAMPLES;
const std::string kConditions =
    R"("temperature": {"value": 25, "unit": "°C"}, "pressure": {"value": 1, "unit": "bar"})";

std::string trimmed(const std::string& s) {
    const auto first = s.find_first_not_of(' ');
    return first == std::string::npos ? "" : s.substr(first, s.find_last_not_of(' ') - first + 1);
}

void replaceAll(std::string& text, const std::string& from, const std::string& to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
        text.replace(at, from.size(), to);
    }
}

/// The content notation of the table: $T, $repeat(N,X), \n and \xHH.
std::string expanded(std::string text) {
    replaceAll(text, "$T", kConditions);
    for (std::size_t at; (at = text.find("$repeat(")) != std::string::npos;) {
        const std::size_t comma = text.find(',', at);
        const std::size_t close = text.find(')', comma);
        const std::size_t count = std::stoul(text.substr(at + 8, comma - at - 8));
        std::string copies;
        for (std::size_t i = 0; i < count; ++i) copies += text.substr(comma + 1, close - comma - 1);
        text.replace(at, close + 1 - at, copies);
    }
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 1 < text.size() && text[i + 1] == 'n') {
            out += '\n';
            ++i;
        } else if (text[i] == '\\' && i + 3 < text.size() && text[i + 1] == 'x') {
            out += static_cast<char>(std::stoi(text.substr(i + 2, 2), nullptr, 16));
            i += 3;
        } else {
            out += text[i];
        }
    }
    return out;
}

struct HostileCase {
    std::string file, arguments, fragment, content;
    int status = -1;
};

std::vector<HostileCase> hostileCases() {
    std::vector<HostileCase> cases;
    std::istringstream lines(readFile(kData + "/hostile-inputs.txt"));
    for (std::string line; std::getline(lines, line);) {
        if (line.empty() || line[0] == '#') continue;
        std::vector<std::string> fields;
        std::size_t start = 0;
        for (int i = 0; i < 4; ++i) {
            const std::size_t bar = line.find(" | ", start);
            fields.push_back(trimmed(line.substr(start, bar - start)));
            start = bar == std::string::npos ? line.size() : bar + 3;
        }
        const std::string content = line.substr(std::min(start, line.size()));
        cases.push_back({fields[0], fields[1], fields[3], expanded(content), std::stoi(fields[2])});
    }
    return cases;
}

}  // namespace

TEST(HostileInput, EachIsRefusedOrWarnedAboutWithItsCauseAndNeverCrashes) {
    const std::vector<HostileCase> cases = hostileCases();
    ASSERT_GT(cases.size(), 20u);
    for (const HostileCase& c : cases) {
#ifdef _WIN32
        // A device that never ends is a POSIX file; Windows has no /dev/zero to read.
        if (c.arguments.find("/dev/") != std::string::npos) continue;
#endif
        ScratchDirectory scratch;
        std::string file = scratch.path(c.file);
        if (c.file.back() == '/') {
            std::filesystem::create_directory(file);
        } else if (c.file != "none") {
            scratch.write(c.file, c.content);
        }
        std::string arguments = c.arguments, fragment = c.fragment;
        const std::string dir = scratch.path().substr(0, scratch.path().size() - 1);
        for (std::string* s : {&arguments, &fragment}) {
            replaceAll(*s, "{examples}", kExamples);
            replaceAll(*s, "{dir}", dir);
        }
        replaceAll(arguments, "{}", file);
        const ProgramRun run = brinecast(arguments, scratch);
        const std::string output = run.out + run.err;
        EXPECT_EQ(run.status, c.status) << c.file << ": " << arguments << "\n" << output;
        EXPECT_NE(output.find(fragment), std::string::npos)
            << c.file << ": " << arguments << "\noutput: " << output << "\nexpected: " << fragment;
        // Every message line the program writes is its own, with its name first.
        std::istringstream err(run.err);
        for (std::string line; std::getline(err, line);) {
            EXPECT_EQ(line.rfind("brinecast: ", 0), 0u) << c.file << ": " << line;
        }
    }
}

// Names and messages carry whatever bytes the file held; the JSON report must parse all the same.
TEST(HostileInput, JsonReportStaysValidJsonWhateverTheNamesHold) {
    ScratchDirectory scratch;
    const std::string rows = "name,temperature,temperature_unit,pressure,pressure_unit,unit,Na,Cl\n"
                             "\"two\nlines\",25,°C,1,bar,mol/kgw,1,1\n"
                             "\"bell\x07 and tab\t\",25,°C,1,bar,mol/kgw,1,1\n"
                             "quote\",25,°C,1,bar,mol/kgw,1,x\n";
    const std::string file = scratch.write("names.csv", rows);
    for (const char* command : {"speciate --format json ", "ph --format json "}) {
        const ProgramRun run = brinecast(command + file, scratch);
        rapidjson::Document d;
        d.Parse<rapidjson::kParseValidateEncodingFlag>(run.out.c_str(), run.out.size());
        ASSERT_FALSE(d.HasParseError()) << rapidjson::GetParseError_En(d.GetParseError()) << "\n" << run.out;
        EXPECT_STREQ(d["analyses"][0]["name"].GetString(), "two\nlines");
        EXPECT_EQ(d["analyses"].Size(), 3u);
    }
    // In CSV every cell stays on its line: one line per analysis and the header.
    const ProgramRun csv = brinecast("speciate --format csv " + file, scratch);
    EXPECT_EQ(std::count(csv.out.begin(), csv.out.end(), '\n'), 4) << csv.out;
    EXPECT_NE(csv.out.find("two lines,"), std::string::npos) << csv.out;
}

