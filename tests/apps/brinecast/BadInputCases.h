#pragma once
// Bad-input cases kept as data: in the file, each input line ("\n" stands for a line break) is
// followed by a line "=> " and the part of the message the input must be refused with.
#include "brinecast/readers/InputError.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

/// Checks that `read` refuses every input of `file` (in the test data folder) with its message.
template <class Read>
void expectEveryCaseRefused(const std::string& file, Read read) {
    std::ifstream in(std::string(BRINECAST_TEST_DATA) + "/" + file);
    std::string input, line;
    int cases = 0;
    while (std::getline(in, line)) {
        if (line.rfind("=> ", 0) != 0) {
            if (line.empty() || line[0] == '#') continue;
            for (std::size_t at; (at = line.find("\\n")) != std::string::npos;) line.replace(at, 2, "\n");
            input = line;
            continue;
        }
        ++cases;
        try {
            read(input);
            ADD_FAILURE() << "accepted: " << input;
        } catch (const korvane::Brinecast::cli::InputError& e) {
            EXPECT_NE(std::string(e.what()).find(line.substr(3)), std::string::npos)
                << "message: " << e.what() << "\nexpected: " << line.substr(3);
        }
    }
    EXPECT_GT(cases, 2) << file;
}
