// SPDX-License-Identifier: MIT
// A second process that controls a camera.
#pragma once

#include "tests/library/genicam/GenicamFixture.h"

#include <fcntl.h>
#include <unistd.h>

namespace genicamtest {

/// Another program that controls the camera at `address`, from construction to destruction.
class OtherProgram {
public:
    enum class Way {
        Free, ///< no program controls the camera
        Steal ///< this process controls the camera; suspend it until it has lost control
    };
    OtherProgram(std::string address, Way way)
    {
        int toChild[2];
        int fromChild[2];
        EXPECT_EQ(pipe2(toChild, O_CLOEXEC), 0);
        EXPECT_EQ(pipe2(fromChild, O_CLOEXEC), 0);
        posix_spawn_file_actions_t pipes;
        posix_spawn_file_actions_init(&pipes);
        posix_spawn_file_actions_adddup2(&pipes, toChild[0], STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&pipes, fromChild[1], STDOUT_FILENO);
        std::string program = ORVALIS_OTHER_PROGRAM;
        std::string victim = std::to_string(getpid());
        char *arguments[] = {program.data(), address.data(),
                             way == Way::Steal ? victim.data() : nullptr, nullptr};
        EXPECT_EQ(posix_spawn(&pid_, program.c_str(), &pipes, nullptr, arguments, environ), 0);
        posix_spawn_file_actions_destroy(&pipes);
        close(toChild[0]);
        close(fromChild[1]);
        input_ = toChild[1];
        char said = 0;
        EXPECT_EQ(read(fromChild[0], &said, 1), 1) << "it says that it controls the camera";
        close(fromChild[0]);
    }
    ~OtherProgram()
    {
        close(input_);
        waitpid(pid_, nullptr, 0);
    }
    OtherProgram(const OtherProgram &) = delete;
    OtherProgram &operator=(const OtherProgram &) = delete;

private:
    pid_t pid_ = -1;
    int input_ = -1;
};

} // namespace genicamtest
