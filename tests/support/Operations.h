#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "support/Ledger.h"

namespace tsv::test {

using Ids = std::vector<std::int32_t>;

// What a user does to the ledger.
struct Operation {
  std::string name;
  std::int32_t id = 0;                                     // of the entry that it changes; 0: none
  std::function<Ids(Tesovia&, std::int32_t version)> run;  // the entries that it made, as far as it tells
};

// Whether it is one of the refusals that other users can bring about (see the source), whatever its origin: in a
// session that has met an error before, that may be an old one.
bool IsRefusal(const Erro& erro);

Operation Posted(std::string name, int day);  // of July 2008
Operation Deleted(std::string name, std::int32_t id);
Operation Settled(std::string name, std::int32_t id, TIPO_BAIXA kind, std::int64_t cents, Date date);
Operation Reversed(std::string name, std::int32_t id);
Operation Transferred(std::string name);

// A ledger to which every operation makes a difference: the entries 1 (10 July), 2 (5 July) and 5 (20 July) stand in
// each other's balances, 3 and 4 are the legs of a transfer (8 July, from account 1.1 to 1.2). Restore brings it back.
class BusyLedger : public Company {
 public:
  BusyLedger();

  // Runs the operation in a session and on a thread of its own; its user has seen the entry as it was at first, or as
  // it is now. Returns a letter: '.' for done, one for each refusal that other users can bring about, and '?'
  // for any other error, which is a failure.
  char Run(const Operation& operation, std::shared_ptr<db::StatementObserver> observer = {},
           bool hasSeenNewest = false) const;
};

// Each kind of operation once: on entry 1, and on leg 3 of the transfer.
std::vector<Operation> EveryOperation();

}  // namespace tsv::test
