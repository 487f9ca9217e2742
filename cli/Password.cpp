#include "Password.h"

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <optional>

#include "Failure.h"

namespace tsv::cli {
namespace {

constexpr char kInterrupt = '\x03';

// The terminal itself, whatever standard input and output are tied to.
class Terminal {
 public:
  Terminal() : descriptor_(open("/dev/tty", O_RDWR | O_CLOEXEC)) {}
  ~Terminal() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  bool IsOpen() const { return descriptor_ >= 0; }

  // Signals are off while nothing is shown, so that none leaves the terminal mute; Ctrl+C comes as a character that
  // ends the line, and interrupts once the terminal speaks again.
  std::string ReadUnseen(const std::string& prompt) {
    termios shown{};
    tcgetattr(descriptor_, &shown);
    termios unseen = shown;
    unseen.c_lflag &= ~static_cast<tcflag_t>(ECHO | ISIG);
    unseen.c_cc[VEOL] = kInterrupt;
    Write(prompt + ": ");
    tcsetattr(descriptor_, TCSAFLUSH, &unseen);
    const std::optional<std::string> line = ReadLine();
    tcsetattr(descriptor_, TCSAFLUSH, &shown);
    Write("\n");
    if (line && line->find(kInterrupt) != std::string::npos) std::raise(SIGINT);
    if (!line || line->find(kInterrupt) != std::string::npos) throw Failure(kUsage, "Senha não informada.");
    return *line;
  }

 private:
  void Write(const std::string& text) {
    if (write(descriptor_, text.data(), text.size()) < 0) throw Failure(kFailed, "O terminal não responde.");
  }

  std::optional<std::string> ReadLine() {
    std::string line;
    for (char c = 0; read(descriptor_, &c, 1) == 1;) {
      if (c == '\n') return line;
      line += c;
      if (c == kInterrupt) return line;
    }
    return std::nullopt;
  }

  int descriptor_;
};

std::optional<std::string> FromEnvironment(const char* variable) {
  const char* value = std::getenv(variable);
  return value ? std::optional<std::string>(value) : std::nullopt;
}

std::string Ask(const char* variable, const std::string& prompt) {
  Terminal terminal;
  if (!terminal.IsOpen()) {
    throw Failure(kUsage, "Sem terminal para perguntar a senha; informe-a na variável " + std::string(variable) + ".");
  }
  return terminal.ReadUnseen(prompt);
}

}  // namespace

std::string GivenPassword(const char* variable, const std::string& prompt) {
  if (auto value = FromEnvironment(variable)) return *value;
  return Ask(variable, prompt);
}

std::string NewPassword(const char* variable, const std::string& prompt) {
  if (auto value = FromEnvironment(variable)) return *value;
  std::string password = Ask(variable, prompt);
  if (Ask(variable, "Repita a senha") != password) throw Failure(kUsage, "As duas senhas não são iguais.");
  return password;
}

}  // namespace tsv::cli
