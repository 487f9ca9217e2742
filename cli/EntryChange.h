#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "CLancamento.h"
#include "Context.h"
#include "Refusals.h"

namespace CLI {
class App;
}

namespace tsv::cli {

// Which entry a command changes, and in which version.
struct EntryChoice {
  std::string id;
  std::string version;  // empty: that of the entry as it is shown
  bool sure = false;

  void AddOptions(CLI::App& command);
  void AddConfirmation(CLI::App& command);  // for what cannot be taken back

  // Asks for what is missing and reads the numbers, before anything else is done.
  void Complete();
};

// One command's change of a stored entry and, for a transfer, of its other leg: shown as it is, changed only if it is
// still what was shown, and shown again.
class EntryChange {
 public:
  EntryChange(Context& context, const EntryChoice& choice);  // logs in and shows

  Tesovia& Ledger() { return tesovia_; }
  const CLancamento& Entry() const { return *entry_; }
  const std::vector<std::shared_ptr<CLancamento>>& Legs() const { return shown_; }  // or the entry alone
  std::int32_t Version() const { return version_; }

  // Stops the command, with the given text, unless the user agrees.
  void Confirm(const std::string& question, const std::string& otherwise) const;

  template <typename Operation>
  auto Run(Operation operation) {
    try {
      return Patiently(context_, operation);
    } catch (const Erro& erro) {
      RaiseWithCause(erro, Classifications());
    }
  }

  void ShowAfter(const std::string& title, const std::vector<std::int32_t>& newIds = {});

 private:
  std::vector<Classification> Classifications() const;

  Context& context_;
  Tesovia& tesovia_;
  bool sure_;
  std::vector<std::shared_ptr<CLancamento>> shown_;
  std::shared_ptr<CLancamento> entry_;
  std::int32_t version_ = 0;
};

}  // namespace tsv::cli
