#pragma once
// Runs the brinecast program as a user does, in a scratch directory that is removed afterwards.

#include <string>

namespace brinecast_test {

struct ProgramRun {
    int status = -1;
    std::string out;
    std::string err;
};

/// A temporary directory, removed with everything in it when the guard goes.
class ScratchDirectory {
public:
    ScratchDirectory();
    ~ScratchDirectory();
    ScratchDirectory(const ScratchDirectory&) = delete;
    ScratchDirectory& operator=(const ScratchDirectory&) = delete;

    /// Writes `text` to `name` inside the directory and returns its path.
    std::string write(const std::string& name, const std::string& text) const;
    std::string path(const std::string& name = "") const { return path_ + "/" + name; }

private:
    std::string path_;
};

/// Runs `brinecast <arguments>` through the shell, with standard error captured in `scratch`.
ProgramRun brinecast(const std::string& arguments, const ScratchDirectory& scratch);

std::string readFile(const std::string& path);

}  // namespace brinecast_test
