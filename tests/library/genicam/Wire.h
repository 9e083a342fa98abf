// SPDX-License-Identifier: MIT
// A separate network cable for each camera, as many as a test needs.
#pragma once

#include "tests/library/genicam/GenicamFixture.h"

#include <filesystem>

namespace genicamtest {

/// A cable from the interface "<name>" of this computer to an interface in a separate network,
/// where a camera can be attached. Removed by the destructor.
class Wire {
public:
    /// Addresses include the prefix length: "169.254.1.1/16".
    Wire(std::string name, const std::string &here, const std::string &there)
        : name_(std::move(name)), far_(name_ + "-far")
    {
        std::string words[] = {"unshare", "--net", "sleep", "infinity"};
        char *arguments[] = {words[0].data(), words[1].data(), words[2].data(), words[3].data(),
                             nullptr};
        EXPECT_EQ(posix_spawnp(&pid_, arguments[0], nullptr, nullptr, arguments, environ), 0);
        while (network(pid_) == network(getpid())) {
            std::this_thread::sleep_for(5ms);
        }
        run("ip link add " + name_ + " type veth peer name " + far_ + " netns " +
            std::to_string(pid_));
        addAddress(here);
        run("ip link set " + name_ + " up");
        runThere("ip link set lo up");
        runThere("ip addr add " + there + " dev " + far_);
        runThere("ip link set " + far_ + " up");
        while (!hasLink()) {
            std::this_thread::sleep_for(5ms);
        }
    }
    ~Wire()
    {
        run("ip link delete " + name_);
        ::kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }
    Wire(const Wire &) = delete;
    Wire &operator=(const Wire &) = delete;

    const std::string &name() const { return name_; }
    /// The interface at the other end.
    const std::string &far() const { return far_; }
    /// Adds an address at this end.
    void addAddress(const std::string &address) { run("ip addr add " + address + " dev " + name_); }
    /// The command prefix that runs a program at the other end.
    std::vector<std::string> launcher() const
    {
        return {"nsenter", "--net", "--target", std::to_string(pid_)};
    }
    /// Runs a command at this end.
    static void run(const std::string &command)
    {
        EXPECT_EQ(std::system(command.c_str()), 0) << command;
    }
    /// Runs a command at the other end.
    void runThere(const std::string &command) const
    {
        run("nsenter --net --target " + std::to_string(pid_) + " " + command);
    }

private:
    static std::string network(pid_t process)
    {
        std::error_code error;
        return std::filesystem::read_symlink("/proc/" + std::to_string(process) + "/ns/net", error);
    }
    bool hasLink() const
    {
        std::ifstream file("/sys/class/net/" + name_ + "/operstate");
        std::string state;
        return !std::getline(file, state) || state == "up";
    }

    std::string name_;
    std::string far_;
    pid_t pid_ = -1;
};

} // namespace genicamtest
