#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "ConsoleHost.h"
#include "Failure.h"
#include "Tesovia.h"
#include "Trace.h"

namespace tsv::cli {

// What all commands share: the options that stand with any of them, and the session.
class Context {
 public:
  std::string arquivo;
  std::string usuario;
  std::string rastrear;
  bool detalhes = false;

  std::function<ExitCode()> action;  // of the command that was given

  // What the action asked of the ledger is done: whatever fails from here on must not look as if it were not, or a user
  // would do it twice.
  bool done = false;

  // Prepares the session for everything that follows: the host, and the trace if one was asked for.
  void Begin();

  // Opens the ledger and logs the user in, with the password of TESOVIA_SENHA or asked for.
  Tesovia& Login();

  // The ledger's path; a usage failure when none was given.
  const std::string& Path() const;

  ConsoleHost& Host() { return *host_; }

  // Keeps a password out of the trace.
  void Hide(std::string_view secret);

 private:
  std::shared_ptr<ConsoleHost> host_ = std::make_shared<ConsoleHost>();
  std::shared_ptr<Trace> trace_;
  std::unique_ptr<Tesovia> tesovia_;
};

}  // namespace tsv::cli
