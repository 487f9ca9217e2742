#include "Asking.h"

#include <unistd.h>

#include <iostream>

#include "Failure.h"
#include "types/Text.h"

namespace tsv::cli {
namespace {

bool IsAtTerminal() { return isatty(STDIN_FILENO) != 0; }

std::string Answer(const std::string& prompt) {
  std::cout.flush();
  std::cerr << prompt << ": ";
  std::string line;
  std::getline(std::cin, line);
  return std::string(text::Trim(line));
}

}  // namespace

std::string AskFor(const std::string& prompt, const std::string& option) {
  std::string answer = IsAtTerminal() ? Answer(prompt) : std::string();
  if (answer.empty()) throw Failure(kUsage, "Informe " + option + ".");
  return answer;
}

std::string GivenOrAsked(const std::string& value, const std::string& prompt, const std::string& option) {
  return value.empty() ? AskFor(prompt, option) : value;
}

bool Confirm(const std::string& question) {
  if (!IsAtTerminal()) return true;
  const std::string answer = text::Lower(Answer(question + " (s/N)"));
  return answer == "s" || answer == "sim";
}

}  // namespace tsv::cli
