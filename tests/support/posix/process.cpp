#include "tests/support/process.h"

#include <fcntl.h>
#include <grp.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <array>
#include <stdexcept>
#include <thread>

namespace {

constexpr int kNotStarted = 127;
constexpr uid_t kNobody = 65534;

std::array<int, 2> Pipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    return ends;
}

struct Terminal {
    int ours = -1, childs = -1;
};

Terminal OpenTerminal(unsigned short columns) {
    Terminal terminal;
    terminal.ours = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK);
    if (terminal.ours < 0 || grantpt(terminal.ours) != 0 || unlockpt(terminal.ours) != 0)
        throw std::runtime_error("no terminal");
    terminal.childs = open(ptsname(terminal.ours), O_RDWR | O_NOCTTY | O_CLOEXEC);
    winsize size{};
    size.ws_col = columns;
    if (ioctl(terminal.childs, TIOCSWINSZ, &size) != 0) throw std::runtime_error("no terminal");
    return terminal;
}

std::string ContentOf(std::FILE* file) {
    std::string content;
    std::array<char, 4096> buffer{};
    std::rewind(file);
    for (std::size_t n; (n = std::fread(buffer.data(), 1, buffer.size(), file)) > 0;)
        content.append(buffer.data(), n);
    return content;
}

void GiveUpRoot() {
    if (getuid() == 0 && (setgroups(0, nullptr) != 0 || setgid(kNobody) != 0 || setuid(kNobody) != 0))
        _exit(kNotStarted);
}

// Ends the running test there and then: what throws this has told what there is to tell.
[[noreturn]] void SkipTest(const char* why) {
    [&] { GTEST_SKIP() << why; }();
    throw testing::AssertionException(
        testing::TestPartResult(testing::TestPartResult::kSkip, __FILE__, __LINE__, why));
}

// As a terminal would start it, whatever the test itself was told to ignore.
void HearSignals() {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) ::signal(signal, SIG_DFL);
}

void LimitFileSize(long bytes) {
    const rlimit limit{static_cast<rlim_t>(bytes), static_cast<rlim_t>(bytes)};
    if (setrlimit(RLIMIT_FSIZE, &limit) != 0) _exit(kNotStarted);
}

}  // namespace

Process::Process(const std::vector<std::string>& command, const ProcessOptions& options)
    : m_asNobody(options.asNobody), m_out(std::tmpfile()), m_err(std::tmpfile()) {
    if (m_out == nullptr || m_err == nullptr) throw std::runtime_error("no temporary file");
    ::signal(SIGPIPE, SIG_IGN);  // a child that ends early shows as a failed Write
    const auto [childsInput, input] = Pipe();
    const Terminal terminal = options.onTerminal ? OpenTerminal(options.terminalColumns) : Terminal{};
    m_input = input;
    m_terminal = terminal.ours;
    m_pid = fork();
    if (m_pid < 0) throw std::runtime_error("no child process");
    if (m_pid == 0) BecomeChild(command, options, childsInput, terminal.childs);
    close(childsInput);
    if (terminal.childs >= 0) close(terminal.childs);
}

void Process::BecomeChild(const std::vector<std::string>& command, const ProcessOptions& options, int input,
                          int terminal) const {
    dup2(input, STDIN_FILENO);
    dup2(fileno(m_out), STDOUT_FILENO);
    dup2(terminal >= 0 ? terminal : fileno(m_err), STDERR_FILENO);
    HearSignals();
    setenv("QTRACE_CONFIG", "/dev/null", 1);  // the user's own settings would change what the program does
    for (const auto& [name, value] : options.environment) setenv(name.c_str(), value.c_str(), 1);
    if (options.fileSizeLimit >= 0) LimitFileSize(options.fileSizeLimit);
    if (options.asNobody) GiveUpRoot();
    std::vector<char*> arguments;
    for (const std::string& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    execvp(arguments[0], arguments.data());
    _exit(kNotStarted);
}

Process::~Process() {
    if (m_pid > 0) {
        kill(m_pid, SIGKILL);
        waitpid(m_pid, nullptr, 0);
    }
    CloseInput();
    if (m_terminal >= 0) close(m_terminal);
    std::fclose(m_out);
    std::fclose(m_err);
}

bool Process::Write(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(m_input, bytes.data(), bytes.size());
        if (written < 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

void Process::CloseInput() {
    if (m_input >= 0) close(m_input);
    m_input = -1;
}

void Process::Send(int signal) const {
    if (m_pid > 0) kill(m_pid, signal);
}

std::string Process::ErrorsSoFar() {
    DrainTerminal();
    if (m_terminal >= 0) return m_onTerminal;
    std::string errors(4096, '\0');
    const ssize_t count = pread(fileno(m_err), errors.data(), errors.size(), 0);
    return errors.substr(0, static_cast<std::size_t>(count < 0 ? 0 : count));
}

void Process::DrainTerminal() {
    std::array<char, 4096> buffer{};
    for (ssize_t n; m_terminal >= 0 && (n = read(m_terminal, buffer.data(), buffer.size())) > 0;)
        m_onTerminal.append(buffer.data(), static_cast<std::size_t>(n));
}

ProcessResult Process::Wait(std::chrono::seconds atMost) {
    CloseInput();
    const auto deadline = std::chrono::steady_clock::now() + atMost;
    int status = 0;
    while (waitpid(m_pid, &status, WNOHANG) == 0) {
        DrainTerminal();
        if (std::chrono::steady_clock::now() > deadline) Send(SIGKILL);
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    m_pid = -1;
    DrainTerminal();
    ProcessResult result;
    if (WIFEXITED(status)) result.exitCode = WEXITSTATUS(status);
    if (WIFSIGNALED(status)) result.signal = WTERMSIG(status);
    result.out = ContentOf(m_out);
    result.err = m_terminal >= 0 ? m_onTerminal : ContentOf(m_err);
    if (m_asNobody && getuid() == 0 && result.exitCode == kNotStarted)
        SkipTest("the program is in a folder that only its owner can enter");
    return result;
}

ProcessResult RunProcess(const std::vector<std::string>& command, const ProcessOptions& options) {
    return Process(command, options).Wait();
}
