#include "ProgramRun.h"

#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
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
    const std::string command = "rm -rf '" + path_ + "'";
    if (std::system(command.c_str()) != 0) std::fprintf(stderr, "could not remove %s\n", path_.c_str());
}

std::string ScratchDirectory::write(const std::string& name, const std::string& text) const {
    std::ofstream(path(name), std::ios::binary) << text;
    return path(name);
}

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

ProgramRun brinecast(const std::string& arguments, const ScratchDirectory& scratch) {
    const std::string errFile = scratch.path("stderr.txt");
    const std::string command =
        std::string(BRINECAST_PROGRAM) + " " + arguments + " 2>'" + errFile + "'";
    ProgramRun run;
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) throw std::runtime_error("cannot run " + command);
    char buffer[4096];
    std::size_t n;
    while ((n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0) run.out.append(buffer, n);
    const int status = pclose(pipe);
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    run.err = readFile(errFile);
    return run;
}

}  // namespace brinecast_test
