#include "support/process.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace {

struct Pipe {
  Pipe() {
    if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  }
  ~Pipe() {
    CloseRead();
    CloseWrite();
  }
  void CloseRead() { Close(ends[0]); }
  void CloseWrite() { Close(ends[1]); }
  static void Close(int& end) {
    if (end >= 0) close(end);
    end = -1;
  }
  std::array<int, 2> ends{-1, -1};
};

class Process {
 public:
  explicit Process(const std::vector<std::string>& command) {
    std::vector<char*> arguments;
    for (const std::string& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input.ends[0], 0);
    posix_spawn_file_actions_adddup2(&actions, output.ends[1], 1);
    posix_spawn_file_actions_adddup2(&actions, errors.ends[1], 2);
    const int failure =
        posix_spawn(&id, arguments[0], &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (failure != 0) throw std::runtime_error("cannot start " + command[0]);
    input.CloseRead();
    output.CloseWrite();
    errors.CloseWrite();
  }

  // Feeds the input while it takes what comes out, so that neither side waits for the other. The
  // input stays open behind an empty text if asked for.
  ProcessResult Finish(std::string_view text, bool keepInputOpen = false) {
    ProcessResult result;
    fcntl(input.ends[1], F_SETFL, O_NONBLOCK);
    bool open = true;
    while (open) {
      if (text.empty() && !keepInputOpen) input.CloseWrite();
      std::array<pollfd, 3> waits{{{output.ends[0], POLLIN, 0},
                                   {errors.ends[0], POLLIN, 0},
                                   {text.empty() ? -1 : input.ends[1], POLLOUT, 0}}};
      poll(waits.data(), waits.size(), -1);
      if (waits[2].revents != 0) {
        const ssize_t written = write(input.ends[1], text.data(), text.size());
        // A program that has closed its input gets no more of it.
        text.remove_prefix(written < 0 ? text.size() : static_cast<std::size_t>(written));
      }
      open = Take(output, waits[0], result.out);
      open = Take(errors, waits[1], result.err) || open;
    }
    int status = 0;
    waitpid(id, &status, 0);
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return result;
  }

  // Writes a text that fits the pipe and waits until the program has taken it.
  void Feed(const std::string& text) {
    if (write(input.ends[1], text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
      throw std::runtime_error("the program takes no input");
    }
    int waiting = 1;
    for (int tries = 0; waiting > 0 && tries < 10000; ++tries) {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
      ioctl(input.ends[1], FIONREAD, &waiting);
    }
    if (waiting > 0) throw std::runtime_error("the program reads no input");
  }

  pid_t id = 0;

 private:
  static bool Take(Pipe& pipe, const pollfd& wait, std::string& text) {
    if (pipe.ends[0] < 0) return false;
    if (wait.revents == 0) return true;
    std::array<char, 65536> buffer;
    const ssize_t count = read(pipe.ends[0], buffer.data(), buffer.size());
    if (count <= 0) {
      pipe.CloseRead();
      return false;
    }
    text.append(buffer.data(), static_cast<std::size_t>(count));
    return true;
  }

  Pipe input, output, errors;
};

}  // namespace

ProcessResult RunProcess(const std::vector<std::string>& command, const std::string& input) {
  std::signal(SIGPIPE, SIG_IGN);
  return Process(command).Finish(input);
}

ProcessResult SignalWaitingProcess(const std::vector<std::string>& command,
                                   const std::string& input, int signal) {
  Process process(command);
  process.Feed(input);
  kill(process.id, signal);
  return process.Finish("", true);
}

TemporaryFolder::TemporaryFolder() {
  folder = (std::filesystem::temp_directory_path() / "npar_test_XXXXXX").string();
  if (mkdtemp(folder.data()) == nullptr) throw std::runtime_error("no temporary folder");
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(folder, ignored);
}

std::string TemporaryFolder::Write(const std::string& name, const std::string& content) const {
  std::ofstream(Path(name), std::ios::binary) << content;
  return Path(name);
}

std::vector<std::string> TemporaryFolder::Names() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    names.push_back(entry.path().filename().string());
  }
  std::ranges::sort(names);
  return names;
}

std::string FileContent(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}
