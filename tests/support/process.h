// Runs a program for a test: its output caught, its input a pipe that the test holds, every wait bounded.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstdio>
#include <map>
#include <string>
#include <string_view>
#include <vector>

struct ProcessOptions {
    std::map<std::string, std::string> environment;  // on top of the test's own, without the user's settings
    // Without root's rights, where the test runs with them. Where nobody else may enter the program's folder,
    // the test is skipped.
    bool asNobody = false;
    long fileSizeLimit = -1;             // [bytes] no file grows beyond it; -1: no limit
    bool onTerminal = false;             // standard error is a terminal
    unsigned short terminalColumns = 0;  // its width; 0: it does not tell
};

struct ProcessResult {
    int exitCode = -1;  // 127: the program could not be started
    int signal = 0;     // that ended it; exitCode is -1 then
    std::string out, err;
};

// Owns the child: a child that still runs at the end of the test is killed.
class Process {
 public:
    explicit Process(const std::vector<std::string>& command, const ProcessOptions& options = {});
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    // Blocks while the child does not read. False when it has closed its end.
    bool Write(std::string_view bytes);
    void CloseInput();
    void Send(int signal) const;
    pid_t Id() const { return m_pid; }  // -1 once it has ended
    std::string ErrorsSoFar();          // what it has said on standard error, or on its terminal

    // Closes the input and waits for the end; a child that takes longer is killed, which shows in the result.
    ProcessResult Wait(std::chrono::seconds atMost = std::chrono::seconds(60));

 private:
    [[noreturn]] void BecomeChild(const std::vector<std::string>& command, const ProcessOptions& options,
                                  int input, int terminal) const;
    void DrainTerminal();

    bool m_asNobody;
    pid_t m_pid = -1;
    int m_input = -1;
    int m_terminal = -1;  // our end of the terminal, or -1
    std::FILE* m_out;     // unnamed temporary files: they take any amount of output
    std::FILE* m_err;
    std::string m_onTerminal;
};

// Runs to the end without input.
ProcessResult RunProcess(const std::vector<std::string>& command, const ProcessOptions& options = {});
