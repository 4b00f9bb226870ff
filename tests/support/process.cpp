// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/process.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <stdexcept>

namespace {

constexpr int kLongestMs = 60000;
constexpr int kCannotRun = 127;

struct pipe_ends {
  int reading, writing;
};

pipe_ends new_pipe() {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  return {ends[0], ends[1]};
}

void close_if_open(int& fd) {
  if (fd >= 0) close(fd);
  fd = -1;
}

[[noreturn]] void become(const process_options& options, int in, int out, int err) {
  dup2(in, STDIN_FILENO);
  dup2(out, STDOUT_FILENO);
  dup2(err, STDERR_FILENO);
  if (!options.stdout_file.empty()) {
    dup2(open(options.stdout_file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644), STDOUT_FILENO);
  }
  for (const int fd : options.closed) close(fd);
  unsetenv("DEBUG");
  for (const std::string& entry : options.env) {
    const size_t equals = entry.find('=');
    setenv(entry.substr(0, equals).c_str(), entry.substr(equals + 1).c_str(), 1);
  }
  std::vector<char*> argv;
  for (const std::string& word : options.argv) argv.push_back(const_cast<char*>(word.c_str()));
  argv.push_back(nullptr);
  execv(options.file.empty() ? argv[0] : options.file.c_str(), argv.data());
  _exit(kCannotRun);
}

/// Appends what there is to read; false at the end.
bool append_from(int fd, std::string& text) {
  std::array<char, 65536> buffer;
  const ssize_t n = read(fd, buffer.data(), buffer.size());
  if (n > 0) text.append(buffer.data(), static_cast<size_t>(n));
  return n > 0;
}

}  // namespace

process::process(const process_options& options) {
  std::signal(SIGPIPE, SIG_IGN);  // a program may end before it has read all its input
  const bool on_terminal = options.terminal || options.one_screen;
  int master = -1, slave = -1;
  if (on_terminal && openpty(&master, &slave, nullptr, nullptr, nullptr) != 0) {
    throw std::runtime_error("no terminal");
  }
  const pipe_ends in = options.terminal ? pipe_ends{dup(slave), dup(master)} : new_pipe();
  pipe_ends out = on_terminal ? pipe_ends{master, slave} : new_pipe();
  if (options.unread) close_if_open(out.reading);
  const pipe_ends err = options.one_screen ? pipe_ends{-1, dup(slave)} : new_pipe();
  pid_ = fork();
  if (pid_ == 0) {
    std::signal(SIGPIPE, SIG_DFL);
    if (options.terminal) close(in.writing);
    if (on_terminal) close(out.reading);
    become(options, in.reading, out.writing, err.writing);
  }
  close(in.reading);
  close(out.writing);
  close(err.writing);
  in_ = in.writing;
  stdout_ = out.reading;
  stderr_ = err.reading;
}

process::~process() {
  close_if_open(in_);
  close_if_open(stdout_);
  close_if_open(stderr_);
  if (pid_ > 0) {
    kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
  }
}

void process::send(std::string_view text) {
  while (!text.empty()) {
    const ssize_t n = write(in_, text.data(), text.size());
    if (n <= 0) return;
    text.remove_prefix(static_cast<size_t>(n));
  }
}

void process::close_input() {
  close_if_open(in_);
}

void process::signal(int number) {
  kill(pid_, number);
}

bool process::read_some(bool read_output) {
  pollfd fds[] = {{read_output ? stdout_ : -1, POLLIN, 0}, {stderr_, POLLIN, 0}};
  if (fds[0].fd < 0 && fds[1].fd < 0) return false;
  if (poll(fds, 2, kLongestMs) <= 0) {
    kill(pid_, SIGKILL);
    return false;
  }
  if (fds[0].revents != 0 && !append_from(stdout_, out_)) close_if_open(stdout_);
  if (fds[1].revents != 0 && !append_from(stderr_, err_)) close_if_open(stderr_);
  return true;
}

bool process::wait_for(std::string_view text) {
  while (out_.find(text) == std::string::npos && err_.find(text) == std::string::npos) {
    if (!read_some(true)) return false;
  }
  return true;
}

void process::wait_until_full() const {
  constexpr useconds_t kPauseUs = 1000;
  const std::string path = "/proc/self/fd/" + std::to_string(stdout_);
  pollfd out = {open(path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC), POLLOUT, 0};
  for (int i = 0; i < kLongestMs && poll(&out, 1, 0) != 0; i++) usleep(kPauseUs);
  close(out.fd);
}

bool process::terminal_echoes() const {
  termios mode{};
  return tcgetattr(in_, &mode) == 0 && (mode.c_lflag & ECHO) != 0 && (mode.c_lflag & ICANON) != 0;
}

process_result process::finish(bool read_output) {
  close_input();
  while (read_some(read_output)) {
  }
  int status = 0;
  waitpid(pid_, &status, 0);
  pid_ = -1;
  constexpr int kSignalled = 128;
  return {out_, err_, WIFEXITED(status) ? WEXITSTATUS(status) : kSignalled + WTERMSIG(status)};
}

process_result run_process(const process_options& options, std::string_view input) {
  process program(options);
  program.send(input);
  return program.finish();
}
