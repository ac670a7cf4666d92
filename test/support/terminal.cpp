#include "support/terminal.h"

#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <stdexcept>

std::string RunInTerminal(const std::vector<std::string>& command, int columns,
                          const std::string& typed) {
  std::vector<char*> arguments;
  for (const std::string& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  struct winsize size {};
  size.ws_row = 24;
  size.ws_col = static_cast<unsigned short>(columns);
  int terminal = -1;
  const pid_t id = forkpty(&terminal, nullptr, nullptr, &size);
  if (id < 0) throw std::runtime_error("no terminal");
  if (id == 0) {
    execv(arguments[0], arguments.data());
    _exit(127);
  }
  if (write(terminal, typed.data(), typed.size()) != static_cast<ssize_t>(typed.size())) {
    throw std::runtime_error("the terminal takes no keys");
  }
  std::string text;
  std::array<char, 4096> buffer;
  while (true) {  // the read fails once nobody has the terminal open
    const ssize_t count = read(terminal, buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) break;
    text.append(buffer.data(), static_cast<std::size_t>(count));
  }
  close(terminal);
  waitpid(id, nullptr, 0);
  std::string lines;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\r' || i + 1 == text.size() || text[i + 1] != '\n') lines += text[i];
  }
  return lines;
}

std::string WithoutEscapes(const std::string& text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\033') {
      while (i + 1 < text.size() && text[i] != 'm' && text[i] != 'K') ++i;
    } else {
      plain += text[i];
    }
  }
  return plain;
}
