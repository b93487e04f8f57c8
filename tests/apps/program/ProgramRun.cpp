#include "ProgramRun.h"

#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace brinecast_test {

ScratchDirectory::ScratchDirectory() {
    char pattern[] = "/tmp/brinecast-test-XXXXXX";
    if (mkdtemp(pattern) == nullptr) throw std::runtime_error("cannot create a scratch directory");
    path_ = pattern;
}

ScratchDirectory::~ScratchDirectory() {
    std::error_code ignored;  // a directory left in /tmp is no reason to fail a test
    std::filesystem::remove_all(path_, ignored);
}

std::string ScratchDirectory::write(const std::string& name, const std::string& text) const {
    std::ofstream(path(name), std::ios::binary) << text;
    return path(name);
}

std::string readFile(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

ProgramRun brinecast(const std::string& arguments, const ScratchDirectory& scratch) {
    const std::string command = std::string(BRINECAST_PROGRAM) + " " + arguments + " 2>'" +
                                scratch.path("stderr.txt") + "'";
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) throw std::runtime_error("cannot run " + command);
    ProgramRun run;
    char buffer[4096];
    for (std::size_t n; (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;) run.out.append(buffer, n);
    const int status = pclose(pipe);
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    run.err = readFile(scratch.path("stderr.txt"));
    return run;
}

}  // namespace brinecast_test
