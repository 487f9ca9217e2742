#pragma once

#include <stdexcept>

namespace tsv::cli {

// What the command tells the program that called it.
enum ExitCode : int {
  kDone = 0,
  kRefused = 1,       // the ledger refused something, or `verificar` found a difference
  kUsage = 2,         // an argument is missing or wrong
  kFailed = 3,        // a file or the database engine
  kLoginRefused = 4,  // unknown user, wrong password, deactivated user
};

// A failure that the command itself finds; the text is for the user.
class Failure : public std::runtime_error {
 public:
  Failure(ExitCode code, const std::string& text) : std::runtime_error(text), code_(code) {}
  ExitCode Code() const noexcept { return code_; }

 private:
  ExitCode code_;
};

}  // namespace tsv::cli
