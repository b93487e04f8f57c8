#include "ProgramRun.h"

#ifndef _WIN32
#include <sys/wait.h>
#endif

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <stdexcept>

namespace brinecast_test {
namespace {

namespace fs = std::filesystem;

#ifdef _WIN32
FILE* startCommand(const std::string& command) { return _popen(command.c_str(), "r"); }
int exitStatus(FILE* pipe) { return _pclose(pipe); }  // the program's own exit code
#else
FILE* startCommand(const std::string& command) { return popen(command.c_str(), "r"); }
int exitStatus(FILE* pipe) {
    const int status = pclose(pipe);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}
#endif

/// The program as the system's shell names it: cmd.exe takes a leading "/" for a switch.
std::string programCommand() { return fs::path(BRINECAST_PROGRAM).make_preferred().string(); }

}  // namespace

ScratchDirectory::ScratchDirectory() {
    std::random_device seed;
    std::mt19937_64 random(seed());
    for (int attempt = 0; attempt < 100 && path_.empty(); ++attempt) {
        const fs::path candidate = fs::temp_directory_path() / ("brinecast-test-" + std::to_string(random()));
        // Creation is the test for a name nobody else holds: it fails on an existing directory.
        if (fs::create_directory(candidate)) path_ = candidate.generic_string();
    }
    if (path_.empty()) {
        throw std::runtime_error("cannot create a scratch directory in " + fs::temp_directory_path().string());
    }
}

ScratchDirectory::~ScratchDirectory() {
    std::error_code ignored;  // a directory left in the temporary directory is no reason to fail a test
    fs::remove_all(path_, ignored);
}

std::string ScratchDirectory::write(const std::string& name, const std::string& text) const {
    std::ofstream(path(name), std::ios::binary) << text;
    return path(name);
}

std::string readFile(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    std::string content = text.str();
#ifdef _WIN32
    // What the program writes in text mode ends its lines in "\r\n" there.
    std::string::size_type out = 0;
    for (std::string::size_type in = 0; in < content.size(); ++in) {
        if (!(content[in] == '\r' && in + 1 < content.size() && content[in + 1] == '\n')) content[out++] = content[in];
    }
    content.resize(out);
#endif
    return content;
}

ProgramRun brinecast(const std::string& arguments, const ScratchDirectory& scratch) {
    // Double quotes: the one quoting that both sh and cmd.exe read.
    const std::string command = programCommand() + " " + arguments + " 2>\"" + scratch.path("stderr.txt") + "\"";
    FILE* pipe = startCommand(command);
    if (pipe == nullptr) throw std::runtime_error("cannot run " + command);
    ProgramRun run;
    char buffer[4096];
    for (std::size_t n; (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;) run.out.append(buffer, n);
    run.status = exitStatus(pipe);
    run.err = readFile(scratch.path("stderr.txt"));
    return run;
}

}  // namespace brinecast_test
