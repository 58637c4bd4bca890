// Programs run by tests. A tool that is missing or fails makes the test fail, never skip.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <sys/wait.h>

namespace kvx {

/// Runs `command` in a shell in `folder` and gives what it wrote, errors included. File system
/// makers live in folders that are not on every user's path.
inline std::string RunTool(const std::string& folder, const std::string& command) {
    const std::string line = "export PATH=\"$PATH:/usr/sbin:/sbin\" LC_ALL=C; cd '" + folder +
                             "' && { " + command + "\n} 2>&1 </dev/null";
    std::string output;
    FILE* pipe = ::popen(line.c_str(), "r");
    if (pipe == nullptr) {
        ADD_FAILURE() << "no shell for: " << command;
        return output;
    }
    char buffer[4096];
    for (std::size_t count; (count = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;)
        output.append(buffer, count);
    const int status = ::pclose(pipe);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "failed: " << command << "\n"
                                                               << output;
    return output;
}

} // namespace kvx
