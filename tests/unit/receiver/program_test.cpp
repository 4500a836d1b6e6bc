// SPDX-License-Identifier: MIT
// The program, started like by a user.

#include "temporary_path.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <poll.h>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>
#include <vector>

namespace
{

class Program
{
public:
    explicit Program(std::vector<std::string> arguments)
    {
        int out[2], error[2];
        EXPECT_EQ(pipe(out), 0);
        EXPECT_EQ(pipe(error), 0);
        Pid = fork();
        if (Pid == 0) {
            dup2(out[1], STDOUT_FILENO);
            dup2(error[1], STDERR_FILENO);
            for (const int fd : {out[0], out[1], error[0], error[1]}) close(fd);
            std::vector<char*> pointers = {const_cast<char*>(RECEIVER_PROGRAM)};
            for (std::string& argument : arguments) pointers.push_back(argument.data());
            pointers.push_back(nullptr);
            execv(RECEIVER_PROGRAM, pointers.data());
            _exit(127);
        }
        close(out[1]);
        close(error[1]);
        Out = out[0];
        Error = error[0];
    }
    ~Program()
    {
        if (Pid > 0) End();
        close(Out);
        close(Error);
    }

    std::string Line() const // of standard output, without its line end
    {
        std::string line;
        char c = 0;
        while (read(Out, &c, 1) == 1 && c != '\n') line += c;
        return line;
    }
    std::string Errors() const { return All(Error); }
    std::string Rest() const { return All(Out); }

    int End() // asks it to end; its exit status
    {
        kill(Pid, SIGTERM);
        return Wait();
    }
    int Wait()
    {
        int status = 0;
        waitpid(Pid, &status, 0);
        Pid = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

private:
    static std::string All(int fd)
    {
        std::string text;
        std::array<char, 1024> part{};
        for (ssize_t count; (count = read(fd, part.data(), part.size())) > 0;) {
            text.append(part.data(), static_cast<size_t>(count));
        }
        return text;
    }

    pid_t Pid = -1;
    int Out = -1, Error = -1;
};

class Port
{
public:
    Port(const std::string& path, speed_t speed) : Fd(open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK))
    {
        EXPECT_GE(Fd, 0) << path;
        SetSpeed(speed);
    }
    ~Port() { close(Fd); }

    void SetSpeed(speed_t speed) const
    {
        termios settings{};
        EXPECT_EQ(tcgetattr(Fd, &settings), 0);
        cfsetspeed(&settings, speed);
        EXPECT_EQ(tcsetattr(Fd, TCSANOW, &settings), 0);
    }
    void Write(std::string_view bytes) const
    {
        EXPECT_EQ(write(Fd, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    }
    // The output until it contains `wanted`, or for ten seconds.
    std::string ReadUntil(std::string_view wanted) const
    {
        using Clock = std::chrono::steady_clock;
        std::string text;
        const auto end = Clock::now() + std::chrono::seconds(10);
        while (text.find(wanted) == std::string::npos && Clock::now() < end) text += ReadFor(20);
        return text;
    }
    std::string ReadFor(int milliseconds) const
    {
        std::array<char, 4096> part{};
        pollfd waiting{Fd, POLLIN, 0};
        if (poll(&waiting, 1, milliseconds) <= 0) return {};
        const ssize_t count = read(Fd, part.data(), part.size());
        return count > 0 ? std::string(part.data(), static_cast<size_t>(count)) : std::string();
    }

private:
    int Fd;
};

std::string Bytes(std::initializer_list<int> values)
{
    std::string bytes;
    for (const int value : values) bytes += static_cast<char>(value);
    return bytes;
}

} // namespace

TEST(Program, BadInputIsOneLineAndExitCode2)
{
    const std::string script = TemporaryPath("receiver_program_script.txt");
    std::ofstream(script) << "1 hop\n";
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{"--frobnicate"},
                                                      {"--rate", "1"},
                                                      {"--script", script},
                                                      {"--script", "/nowhere/x"},
                                                      {"--play", "/nowhere/x"},
                                                      {"--record", "/nowhere/x"},
                                                      {"--script", "/"},
                                                      {"--play", "/"},
                                                      {"--record", "/"},
                                                      {"--track", "/"},
                                                      {"--link", "/nowhere/x"}}) {
        Program program(arguments);
        const std::string error = program.Errors();
        EXPECT_EQ(program.Wait(), 2) << arguments[0];
        EXPECT_EQ(error.find("toravane-receiver: "), 0u);
        EXPECT_EQ(error.find('\n'), error.size() - 1) << error;
        EXPECT_EQ(program.Rest(), "");
    }
    std::filesystem::remove(script);
}

TEST(Program, HelpAndVersion)
{
    Program help({"--help"});
    EXPECT_NE(help.Rest().find("Exit status:"), std::string::npos);
    EXPECT_EQ(help.Wait(), 0);
    Program version({"--version"});
    EXPECT_EQ(version.Rest().find("toravane-receiver "), 0u);
    EXPECT_EQ(version.Wait(), 0);
}

// Runs the program in a shell with redirected outputs; returns exit code and standard error.
std::pair<int, std::string> Redirected(const std::string& options, const std::string& redirection)
{
    const std::string errors = TemporaryPath("receiver_program_errors.txt");
    const std::string command =
        "timeout 10 " RECEIVER_PROGRAM " " + options + " " + redirection + " 2>" + errors;
    const int status = std::system(command.c_str());
    std::ostringstream text;
    text << std::ifstream(errors).rdbuf();
    std::filesystem::remove(errors);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, text.str()};
}

TEST(Program, OutputThatCannotBeWrittenIsAnError)
{
    using Result = std::pair<int, std::string>;
    const Result full = {2, "toravane-receiver: standard output: No space left on device\n"};
    const Result closed = {2, "toravane-receiver: standard output: Bad file descriptor\n"};
    for (const char* option : {"--help", "--version", ""}) {
        EXPECT_EQ(Redirected(option, ">/dev/full"), full) << option;
        EXPECT_EQ(Redirected(option, ">&-"), closed) << option;
    }
}

TEST(Program, ARecordThatCannotBeKeptIsAnError)
{
    Program program({"--record", "/dev/full"});
    const Port port(program.Line(), B4800);
    port.Write("hello");
    EXPECT_EQ(program.Errors(), "toravane-receiver: /dev/full: No space left on device\n");
    EXPECT_EQ(program.Wait(), 2);
}

TEST(Program, SpeaksOnItsTerminalUntilItIsEnded)
{
    const std::string link = TemporaryPath("receiver_program_link");
    Program program({"--link", link});
    const std::string path = program.Line();
    EXPECT_EQ(std::filesystem::read_symlink(link), path);
    {
        const Port port(link, B4800);
        EXPECT_NE(port.ReadUntil("$GPGGA,").find("$PSRFTXT,Baud rate: 4800*65\r\n"), std::string::npos);
    }
    EXPECT_EQ(program.End(), 0);
    EXPECT_FALSE(std::filesystem::is_symlink(link));
}

TEST(Program, SwitchesProtocolAndRateThereAndBack)
{
    Program program({"--speed", "5", "--start", "hot"});
    const Port port(program.Line(), B4800);
    EXPECT_NE(port.ReadUntil("$GPGGA,").find("$GPGGA,"), std::string::npos);
    port.Write("$PSRF100,0,38400,8,1,0*3C\r\n");
    for (int i = 0; i < 10; ++i) port.ReadFor(50); // what was on its way
    std::string garbage;
    for (int i = 0; i < 10; ++i) garbage += port.ReadFor(50);
    EXPECT_NE(garbage, "");
    EXPECT_EQ(garbage.find("GP"), std::string::npos);
    port.SetSpeed(B38400);
    const std::string frame = Bytes({0xA0, 0xA2, 0x00, 0x29, 0x02});
    EXPECT_NE(port.ReadUntil(frame).find(frame), std::string::npos);
    port.Write(Bytes({0xA0, 0xA2, 0x00, 0x18, 0x81, 0x02, 1, 1, 1, 1, 5,    1,    5,    1,    1,    1,
                      1,    1,    0,    1,    0,    1,    0, 1, 0, 1, 0x25, 0x80, 0x01, 0x40, 0xB0, 0xB3}));
    const std::string acknowledged = Bytes({0xA0, 0xA2, 0x00, 0x02, 0x0B, 0x81, 0x00, 0x8C, 0xB0, 0xB3});
    EXPECT_NE(port.ReadUntil(acknowledged).find(acknowledged), std::string::npos);
    port.SetSpeed(B9600);
    EXPECT_NE(port.ReadUntil("$GPRMC,").find("$GPRMC,"), std::string::npos);
}

TEST(Program, TheTerminalGoesAwayAndComesBack)
{
    const std::string link = TemporaryPath("receiver_program_vanish");
    const std::string script = TemporaryPath("receiver_program_vanish.txt");
    std::ofstream(script) << "3 vanish 5\n12 quit\n";
    Program program({"--link", link, "--script", script, "--speed", "5"});
    const std::string first = program.Line();
    {
        const Port port(link, B4800);
        EXPECT_NE(port.ReadUntil("$GPGGA,"), "");
        const std::string second = program.Line(); // printed when it is back
        EXPECT_EQ(std::filesystem::read_symlink(link), second);
    }
    const Port port(link, B4800);
    EXPECT_NE(port.ReadUntil("$GPGGA,").find("$GPGGA,"), std::string::npos);
    EXPECT_EQ(program.Wait(), 0); // quit
    std::filesystem::remove(script);
}

TEST(Program, PlaysALogForItsFirstListenerAndRecordsTheHost)
{
    const std::string log = TemporaryPath("receiver_program_log.txt");
    const std::string record = TemporaryPath("receiver_program_record.txt");
    std::ofstream(log) << "# a comment\n$GPXXX,1*23\r\n" + std::string(300, 'y') + "$GPXXX,2*20\r\n";
    Program program({"--play", log, "--rate", "9600", "--record", record});
    const std::string path = program.Line();
    usleep(300000); // nobody listens yet
    {
        const Port port(path, B9600);
        port.Write("hello");
        EXPECT_EQ(port.ReadUntil("*20\r\n"), "$GPXXX,1*23\r\n" + std::string(300, 'y') + "$GPXXX,2*20\r\n");
    }
    EXPECT_EQ(program.Wait(), 0);
    std::ostringstream heard;
    heard << std::ifstream(record).rdbuf();
    EXPECT_EQ(heard.str(), "hello");
    std::filesystem::remove(log);
    std::filesystem::remove(record);
}
