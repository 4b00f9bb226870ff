// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/remote/child.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <system_error>

namespace companions {
namespace {

constexpr int kNotRun = 127;      // the shell's status for a program that cannot be run
constexpr int kSignalBase = 128;  // and for one that a signal ended

/// Both ends of a pipe; no program that is started later inherits them.
struct pipe_ends {
  pipe_ends() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::system_error(errno, std::generic_category());
    out = ends[0];
    in = ends[1];
  }
  ~pipe_ends() {
    close(out);
    if (in >= 0) close(in);
  }
  pipe_ends(const pipe_ends&) = delete;
  pipe_ends& operator=(const pipe_ends&) = delete;

  void close_in() {
    close(in);
    in = -1;
  }

  int out, in;
};

/// Starts a program with `own` as its stream number `stream`.
pid_t start(const std::vector<std::string>& argv, int own, int stream) {
  std::vector<char*> words;
  words.reserve(argv.size() + 1);
  for (const std::string& word : argv) words.push_back(const_cast<char*>(word.c_str()));
  words.push_back(nullptr);
  const pid_t pid = fork();
  if (pid < 0) throw std::system_error(errno, std::generic_category());
  if (pid > 0) return pid;
  // A device is left alone when whoever asked for it has gone.
  prctl(PR_SET_PDEATHSIG, SIGINT);
  dup2(own, stream);
  execvp(words[0], words.data());
  std::fprintf(stderr, "cannot run %s: %s\n", words[0], std::strerror(errno));
  _exit(kNotRun);
}

int wait_for(pid_t pid) {
  int status = 0;
  while (waitpid(pid, &status, 0) < 0) {
    if (errno != EINTR) return kNotRun;
  }
  return WIFSIGNALED(status) ? kSignalBase + WTERMSIG(status) : WEXITSTATUS(status);
}

}  // namespace

child::child(const std::vector<std::string>& argv) {
  const pipe_ends pipe;
  pid_ = start(argv, pipe.in, STDOUT_FILENO);
  output_ = std::make_unique<std::ifstream>("/dev/fd/" + std::to_string(pipe.out));
}

child::~child() {
  if (pid_ < 0) return;
  kill(pid_, SIGINT);
  wait();
}

int child::wait() {
  output_.reset();  // a program that writes on is to notice that nobody reads
  const int status = wait_for(pid_);
  pid_ = -1;
  return status;
}

int run_program(const std::vector<std::string>& argv, std::string_view input) {
  pipe_ends pipe;
  const pid_t pid = start(argv, pipe.out, STDIN_FILENO);
  // A program that ends before it has read everything says itself what is wrong.
  std::signal(SIGPIPE, SIG_IGN);
  while (!input.empty()) {
    const ssize_t written = write(pipe.in, input.data(), input.size());
    if (written < 0) break;
    input.remove_prefix(static_cast<size_t>(written));
  }
  pipe.close_in();
  return wait_for(pid);
}

}  // namespace companions
