// SPDX-License-Identifier: MIT
// A child process with pipes to its standard input and output.
#pragma once

#include "tests/library/genicam/GenicamFixture.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace genicamtest {

/// Runs the program; the destructor kills it if it is still running.
class ChildProgram {
public:
    explicit ChildProgram(std::vector<std::string> command)
    {
        int toChild[2];
        int fromChild[2];
        EXPECT_EQ(pipe2(toChild, O_CLOEXEC), 0);
        EXPECT_EQ(pipe2(fromChild, O_CLOEXEC), 0);
        posix_spawn_file_actions_t pipes;
        posix_spawn_file_actions_init(&pipes);
        posix_spawn_file_actions_adddup2(&pipes, toChild[0], STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&pipes, fromChild[1], STDOUT_FILENO);
        std::vector<char *> arguments;
        for (std::string &word : command) {
            arguments.push_back(word.data());
        }
        arguments.push_back(nullptr);
        EXPECT_EQ(posix_spawn(&pid_, arguments[0], &pipes, nullptr, arguments.data(), environ), 0);
        posix_spawn_file_actions_destroy(&pipes);
        close(toChild[0]);
        close(fromChild[1]);
        input_ = toChild[1];
        output_ = fromChild[0];
    }
    ~ChildProgram()
    {
        close(input_);
        close(output_);
        if (pid_ > 0) {
            ::kill(pid_, SIGKILL);
            waitpid(pid_, nullptr, 0);
        }
    }
    ChildProgram(const ChildProgram &) = delete;
    ChildProgram &operator=(const ChildProgram &) = delete;

    void say(const std::string &text)
    {
        EXPECT_EQ(write(input_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }
    /// The next line of its output, without the newline; an incomplete line after two minutes or at
    /// the end of its output.
    std::string line()
    {
        std::string text;
        pollfd waiting{output_, POLLIN, 0};
        for (char next = 0; poll(&waiting, 1, 120000) == 1 && read(output_, &next, 1) == 1;) {
            if (next == '\n') {
                break;
            }
            text += next;
        }
        return text;
    }
    /// Its exit status; -1 if it does not exit within `timeout`, or a signal ends it.
    int exitStatus(std::chrono::seconds timeout)
    {
        int status = 0;
        pid_t ended = 0;
        for (const auto limit = Clock::now() + timeout; ended == 0 && Clock::now() < limit;) {
            std::this_thread::sleep_for(5ms);
            ended = waitpid(pid_, &status, WNOHANG);
        }
        if (ended != pid_) {
            return -1;
        }
        pid_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

private:
    pid_t pid_ = -1;
    int input_ = -1;
    int output_ = -1;
};

} // namespace genicamtest
