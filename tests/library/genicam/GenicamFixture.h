// SPDX-License-Identifier: MIT
// Helpers for tests of real cameras: test cameras in other processes, and their streams.
#pragma once

#include "library/core/Device.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <vector>

extern char **environ;

namespace genicamtest {

using namespace std::chrono_literals;
using orvalis::Backend;
using orvalis::Clock;
using orvalis::Device;
using orvalis::RawImage;

/// A GigE Vision camera in another process. The destructor kills it.
class CameraProcess {
public:
    /// `number` 1 is GV01 at 127.0.0.1, 2 is GV02 at 127.0.0.2.
    explicit CameraProcess(int number)
        : CameraProcess(number, "127.0.0." + std::to_string(number), {})
    {
    }
    /// GV01, GV02 ... at an address of another network, in which `launcher` runs programs.
    CameraProcess(int number, std::string address, std::vector<std::string> launcher)
        : address_(std::move(address)), serial_("GV0" + std::to_string(number)),
          command_(std::move(launcher))
    {
        for (const auto &word : {std::string("arv-fake-gv-camera-0.8"), std::string("-i"), address_,
                                 std::string("-s"), serial_}) {
            command_.push_back(word);
        }
        start();
    }
    ~CameraProcess() { kill(); }
    CameraProcess(const CameraProcess &) = delete;
    CameraProcess &operator=(const CameraProcess &) = delete;

    std::string id() const { return "Aravis-Fake-" + serial_; }
    const std::string &address() const { return address_; }

    void start()
    {
        std::vector<char *> arguments;
        for (std::string &word : command_) {
            arguments.push_back(word.data());
        }
        arguments.push_back(nullptr);
        ASSERT_EQ(posix_spawnp(&pid_, arguments[0], nullptr, nullptr, arguments.data(), environ),
                  0);
        while (!listens()) {
            ASSERT_EQ(waitpid(pid_, nullptr, WNOHANG), 0) << "the camera process has ended";
            std::this_thread::sleep_for(5ms);
        }
    }

    /// Makes the camera silent, as if the network were cut: not even its host reports a closed
    /// port.
    void freeze() { ::kill(pid_, SIGSTOP); }
    void kill()
    {
        if (pid_ > 0) {
            ::kill(pid_, SIGKILL);
            waitpid(pid_, nullptr, 0);
            pid_ = -1;
        }
    }

private:
    bool listens() const
    {
        char socket[32];
        std::snprintf(socket, sizeof socket, " %08X:0F74 ", inet_addr(address_.c_str()));
        std::ifstream sockets("/proc/" + std::to_string(pid_) + "/net/udp");
        for (std::string line; std::getline(sockets, line);) {
            if (line.find(socket) != std::string::npos) {
                return true;
            }
        }
        return false;
    }

    std::string address_;
    std::string serial_;
    std::vector<std::string> command_;
    pid_t pid_ = -1;
};

inline std::unique_ptr<Device> openCamera(Backend &backend, const std::string &id)
{
    std::unique_ptr<Device> device;
    EXPECT_EQ(backend.open(id, device), ORVALIS_OK);
    return device;
}

/// Waits for the next image of a running stream, with a timeout long enough for a busy machine.
inline OResult nextImage(Device &device, RawImage &image)
{
    return device.nextImage(image, Clock::now() + 30s);
}

/// Tests with cameras in other processes, in a separate network.
class GigeFixture : public testing::Test {
protected:
    void SetUp() override
    {
        if (std::getenv("ORVALIS_GIGE_NETWORK") == nullptr) {
            GTEST_SKIP() << "runs only in a separate network: tests/contract/run_gige.sh";
        }
    }
    std::unique_ptr<Device> discoveredAndOpened(const CameraProcess &camera)
    {
        backend_->discover();
        return openCamera(*backend_, camera.id());
    }

    std::unique_ptr<Backend> backend_ = orvalis::makeGenicamBackend(false);
};

/// Runs `call` and expects that it does not wait for a silent camera, however slow the machine.
template <typename Call> void expectSoon(const char *what, Call call)
{
    constexpr auto generous = 30s;
    const Clock::time_point begin = Clock::now();
    call();
    const std::chrono::duration<double, std::milli> time = Clock::now() - begin;
    std::printf("%-24s %8.2f ms\n", what, time.count());
    EXPECT_LT(time, generous) << what;
}

/// Runs `call` and expects the result for a lost camera at once: Aravis takes 2.5 s for a request
/// without an answer, but the library does not pass it on.
template <typename Call> void expectLost(const char *what, Call call)
{
    expectSoon(what, [&] { EXPECT_EQ(call(), ORVALIS_ERROR_CONNECTION_LOST) << what; });
}

/// The result that ends a stream.
inline OResult streamUntilItEnds(Device &device)
{
    RawImage image;
    OResult result = ORVALIS_OK;
    while (result == ORVALIS_OK || result == ORVALIS_ERROR_TIMEOUT) {
        result = nextImage(device, image);
    }
    return result;
}

/// Aravis' test cameras send a slope that moves by one grey level for each frame. A frame composed
/// of two has an edge.
inline bool isWhole(const RawImage &image)
{
    if (image.size < std::size_t{image.width} * image.height || image.width < 2) {
        return false;
    }
    for (std::size_t y = 0; y + 1 < image.height; ++y) {
        const std::uint8_t *row = image.data + y * image.width;
        for (std::size_t x = 0; x + 1 < image.width; ++x) {
            if (row[x + 1] != row[image.width + x]) {
                return false;
            }
        }
    }
    return true;
}

inline std::int64_t integer(Device &device, std::string_view name)
{
    orvalis::IntegerValue value;
    EXPECT_EQ(device.nodes().getInteger(name, value), ORVALIS_OK) << name;
    return value.value;
}

inline bool lists(Device &device, std::string_view category, std::string_view name)
{
    std::vector<std::string> children;
    EXPECT_EQ(device.nodes().list(category, children), ORVALIS_OK) << category;
    return std::find(children.begin(), children.end(), name) != children.end();
}

} // namespace genicamtest
