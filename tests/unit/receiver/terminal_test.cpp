// SPDX-License-Identifier: MIT
// The pseudo-terminal, with a host that opens it, sets its rate, closes it and opens it again.

#include "receiver/terminal.h"
#include "temporary_path.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

using namespace receiver;

namespace
{

struct Host {
    explicit Host(const std::string& path) : fd(open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK)) {}
    ~Host() { close(fd); }

    void SetSpeed(speed_t speed) const
    {
        termios settings{};
        ASSERT_EQ(tcgetattr(fd, &settings), 0);
        cfsetspeed(&settings, speed);
        ASSERT_EQ(tcsetattr(fd, TCSANOW, &settings), 0);
    }
    // Bytes that are available, or arrive within the time.
    std::string Read(int milliseconds = 50) const
    {
        pollfd waiting{fd, POLLIN, 0};
        poll(&waiting, 1, milliseconds);
        char buffer[512];
        const ssize_t count = read(fd, buffer, sizeof buffer);
        return count > 0 ? std::string(buffer, static_cast<size_t>(count)) : "";
    }

    int fd;
};

} // namespace

TEST(Terminal, IsRawAndAtTheReceiversRate)
{
    Terminal terminal;
    std::string error;
    ASSERT_TRUE(terminal.Open("", 57600, error)) << error;
    EXPECT_EQ(terminal.HostRate(), 57600u);
    const Host host(terminal.Path());
    termios settings{};
    ASSERT_EQ(tcgetattr(host.fd, &settings), 0);
    EXPECT_EQ(settings.c_lflag & (ICANON | ECHO | ISIG), 0u);
    EXPECT_EQ(settings.c_oflag & OPOST, 0u);
}

TEST(Terminal, CarriesAllBytesBothWays)
{
    Terminal terminal;
    std::string error;
    ASSERT_TRUE(terminal.Open("", 4800, error)) << error;
    const Host host(terminal.Path());
    ASSERT_GE(host.fd, 0);
    Bytes all;
    for (int value = 0; value < 256; ++value) all.push_back(static_cast<uint8_t>(value));
    terminal.Write(all);
    EXPECT_EQ(host.Read(), std::string(all.begin(), all.end()));
    ASSERT_EQ(write(host.fd, all.data(), all.size()), 256);
    terminal.Wait(100);
    EXPECT_EQ(terminal.Read(), all);
}

TEST(Terminal, SeesTheHostComeSetItsRateAndGo)
{
    Terminal terminal;
    std::string error;
    ASSERT_TRUE(terminal.Open("", 4800, error)) << error;
    EXPECT_FALSE(terminal.HostPresent());
    for (const auto& [speed, rate] : {std::pair{B1200, 1200u}, {B9600, 9600u}, {B115200, 115200u}}) {
        const Host host(terminal.Path());
        EXPECT_TRUE(terminal.HostPresent());
        host.SetSpeed(static_cast<speed_t>(speed));
        EXPECT_EQ(terminal.HostRate(), rate);
    }
    EXPECT_FALSE(terminal.HostPresent());
    EXPECT_EQ(terminal.HostRate(), 115200u); // settings stay
}

TEST(Terminal, WhatNobodyReadIsNotThereForTheNextHost)
{
    Terminal terminal;
    std::string error;
    ASSERT_TRUE(terminal.Open("", 4800, error)) << error;
    terminal.Write({'o', 'l', 'd'}); // nobody listens
    {
        const Host host(terminal.Path());
        EXPECT_EQ(host.Read(), "");
        terminal.Write({'m', 'i', 'd'});
    }
    terminal.Write({'o', 'f', 'f'});
    const Host host(terminal.Path());
    EXPECT_EQ(host.Read(), "");
    terminal.Write({'n', 'e', 'w'});
    EXPECT_EQ(host.Read(), "new");
}

TEST(Terminal, AHostThatDoesNotReadDoesNotBlock)
{
    Terminal terminal;
    std::string error;
    ASSERT_TRUE(terminal.Open("", 4800, error)) << error;
    const Host host(terminal.Path());
    for (int i = 0; i < 1000; ++i) terminal.Write(Bytes(1000, 'x'));
    EXPECT_GT(terminal.BytesLost, 0u);
}

TEST(Terminal, LinkFollowsTheTerminalAndGoesWithIt)
{
    const std::string link = TemporaryPath("receiver_link");
    std::filesystem::remove(link);
    std::filesystem::create_symlink("/nowhere", link); // of a run that was killed
    Terminal terminal;
    std::string error;
    ASSERT_TRUE(terminal.Open(link, 4800, error)) << error;
    EXPECT_EQ(std::filesystem::read_symlink(link), terminal.Path());
    terminal.Close();
    EXPECT_FALSE(std::filesystem::is_symlink(link));
    ASSERT_TRUE(terminal.Open(link, 4800, error)) << error;
    EXPECT_EQ(std::filesystem::read_symlink(link), terminal.Path());
}

TEST(Terminal, AFileInTheLinksPlaceIsLeftAlone)
{
    const std::string path = TemporaryPath("receiver_no_link");
    std::ofstream(path) << "precious";
    Terminal terminal;
    std::string error;
    EXPECT_FALSE(terminal.Open(path, 4800, error));
    EXPECT_NE(error.find(path + ": "), std::string::npos);
    EXPECT_TRUE(std::filesystem::is_regular_file(path));
    std::filesystem::remove(path);
}
