#pragma once

#include <chrono>
#include <exception>
#include <string>
#include <vector>

#include "ConsoleHost.h"
#include "Context.h"
#include "Registration.h"
#include "types/Erro.h"

// What the ledger's errors mean to whoever gave the command.
namespace tsv::cli {

bool IsRefusal(const Erro& erro);  // one of the library's own numbers

// What to tell the user: the error's text, the box that the ledger showed, or what its silence means.
std::string ReasonOf(const Erro& erro, const ConsoleHost& host);

// Raises the error again; where its text says that something may have been deactivated, with a sentence about each of
// these that takes no postings.
[[noreturn]] void RaiseWithCause(const Erro& erro, const std::vector<Classification>& involved);

// How often and how long to try again.
class Patience {
 public:
  explicit Patience(const ConsoleHost& host);

  // After a failure that only another user's haste can have caused: true after a moment, unless it lasts too long.
  bool AllowsAnotherTry(const Erro& erro);

 private:
  bool OnlyCameSecond(const Erro& erro);

  const ConsoleHost& host_;
  std::chrono::steady_clock::time_point end_;
  int silent_ = 0;
};

// Notes, when an operation ends without an error, that it is done.
class Done {
 public:
  explicit Done(Context& context) : context_(context) {}
  ~Done() { context_.done = std::uncaught_exceptions() == before_; }
  Done(const Done&) = delete;
  Done& operator=(const Done&) = delete;

 private:
  Context& context_;
  int before_ = std::uncaught_exceptions();
};

// Runs an operation, and again for some seconds while it only comes second to another user's. Any other refusal is
// raised at once, above all that of an entry which is no longer what was seen.
template <typename Operation>
auto Patiently(Context& context, Operation operation) {
  for (Patience patience(context.Host());;) {
    context.Host().ForgetBox();
    try {
      const Done done(context);
      return operation();
    } catch (const Erro& erro) {
      if (!patience.AllowsAnotherTry(erro)) throw;
    }
  }
}

}  // namespace tsv::cli
