// SPDX-License-Identifier: MIT
// A network cable that tests can pull out, plug in, and limit in packet size.
#pragma once

#include "tests/library/genicam/GenicamFixture.h"

namespace genicamtest {

/// The cable that run_gige.sh --cable has created between this network and the cameras' network:
/// 10.77.0.1 here, 10.77.0.2 there. The destructor restores the initial state, without addresses.
class Cable {
public:
    static constexpr const char *cameraAddress = "10.77.0.2";
    static constexpr const char *secondAddress = "10.77.0.3";

    explicit Cable(int mtu = 1500)
    {
        addAddressHere();
        addAddressThere(cameraAddress);
        addAddressThere(secondAddress);
        setMtuHere(mtu);
        setMtuThere(mtu);
        run(here() + "link set cable0 up");
        plugIn();
    }
    ~Cable()
    {
        removeAddressesHere();
        run(there() + "addr flush dev cable1");
        pullOut();
    }
    Cable(const Cable &) = delete;
    Cable &operator=(const Cable &) = delete;

    /// The command prefix that runs a program at the camera's end.
    static std::vector<std::string> launcher()
    {
        const char *process = std::getenv("ORVALIS_CABLE_PID");
        return {"nsenter", "--net", "--target", process != nullptr ? process : "0"};
    }

    void addAddressHere() { run(here() + "addr add 10.77.0.1/24 dev cable0"); }
    void removeAddressesHere() { run(here() + "addr flush dev cable0"); }
    void addAddressThere(const std::string &address)
    {
        run(there() + "addr add " + address + "/24 dev cable1");
    }
    void pullOut() { run(there() + "link set cable1 down"); }
    void plugIn()
    {
        run(there() + "link set cable1 up");
        while (!hasLink()) {
            std::this_thread::sleep_for(5ms);
        }
    }
    /// Sets the largest packet that this computer accepts: larger ones are lost.
    void setMtuHere(int bytes) { run(here() + "link set cable0 mtu " + std::to_string(bytes)); }
    void setMtuThere(int bytes) { run(there() + "link set cable1 mtu " + std::to_string(bytes)); }

private:
    static std::string here() { return "ip "; }
    static std::string there()
    {
        std::string command;
        for (const std::string &word : launcher()) {
            command += word + " ";
        }
        return command + "ip ";
    }
    static void run(const std::string &command)
    {
        EXPECT_EQ(std::system(command.c_str()), 0) << command;
    }
    static bool hasLink()
    {
        std::ifstream file("/sys/class/net/cable0/operstate");
        std::string state;
        return !std::getline(file, state) || state == "up";
    }
};

} // namespace genicamtest
