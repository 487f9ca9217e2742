#pragma once

#include <functional>
#include <string>
#include <vector>

#include "support/Ledger.h"

namespace tsv::test {

// What happens just before a statement of a running operation.
struct Meanwhile {
  std::string at;  // how the statement begins
  std::function<void(const Company&)> happens;
  int time = 1;  // 2: at the second such statement
};

Meanwhile Others(std::string sql);        // another user's statement, before the operation's transaction
Meanwhile OthersDelete(std::int32_t id);  // likewise the deletion of an entry
Meanwhile Within(std::string at, std::string sql, int time = 1);  // what the transaction keeps other users from
Meanwhile DiskFails(std::string at, int time = 1);

using Action = std::function<void(Tesovia&)>;

struct Attempt {
  Attempt(Action action) : act(std::move(action)) {}  // NOLINT: meant to convert
  Attempt(Action action, std::string statement) : act(std::move(action)), before(std::move(statement)) {}
  Attempt(Action action, Meanwhile event) : act(std::move(action)), meanwhile(std::move(event)) {}

  Action act;
  std::string before;  // a statement that runs first
  Meanwhile meanwhile;
};

// A ledger in which something has happened.
class Refusals {
 public:
  explicit Refusals(const Action& given);

  // Each attempt fails with this error and leaves the ledger as it was. It is made on a copy, and on a thread that has
  // met no error yet.
  void Expect(std::int32_t number, const char* origin, const std::string& description,
              const std::vector<Attempt>& attempts) const;

 private:
  Company company_;
};

// All entries, journal rows, links and the serial, as text.
std::string ContentsOf(const Company& company);

}  // namespace tsv::test
