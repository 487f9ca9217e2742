#include <gtest/gtest.h>

#include <csignal>

#include <sys/wait.h>
#include <unistd.h>

#include "support/Operations.h"
#include "support/Refusals.h"

using namespace tsv;
using namespace tsv::test;

namespace {

// Dies at one place of what it observes: each statement has two, just before and just after it runs.
class Killer : public db::StatementObserver {
 public:
  explicit Killer(std::size_t place) : place_(place) {}
  void AboutToRun(std::string_view) override { Step(); }
  void HasRun(std::string_view, std::int32_t) override { Step(); }

 private:
  void Step() {
    if (place_-- == 0) kill(getpid(), SIGKILL);
  }
  std::size_t place_;
};

// In a process of its own; whether that was killed. No database is open in this process meanwhile.
bool RunAndDie(const BusyLedger& ledger, const Operation& operation, std::size_t place) {
  const pid_t child = fork();
  if (child == 0) {
    char ending = '?';
    try {
      ending = ledger.Run(operation, std::make_shared<Killer>(place));
    } catch (...) {
    }
    _exit(ending == '.' ? 0 : 1);
  }
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_TRUE(WIFSIGNALED(status) || (WIFEXITED(status) && WEXITSTATUS(status) == 0));
  return WIFSIGNALED(status);
}

TEST(Kill, AnOperationIsWholeOrNotThereAtAll) {
  const BusyLedger ledger;
  const std::string before = ContentsOf(ledger);
  for (const Operation& operation : EveryOperation()) {
    SCOPED_TRACE(operation.name);
    ledger.Restore();
    const auto recorder = std::make_shared<Recorder>();
    EXPECT_EQ(ledger.Run(operation, recorder), '.');
    ASSERT_EQ(recorder->ran.back().text, "CommitTrans");
    const std::string after = ContentsOf(ledger);
    ExpectSound(ledger);

    const std::size_t places = 2 * recorder->ran.size();
    for (std::size_t place = 0; place < places; ++place) {
      SCOPED_TRACE("killed at place " + std::to_string(place) + " of " + std::to_string(places));
      ledger.Restore();
      ASSERT_TRUE(RunAndDie(ledger, operation, place));
      const bool committed = place == places - 1;
      EXPECT_EQ(ContentsOf(ledger), committed ? after : before);
      if (!committed) {
        EXPECT_EQ(ledger.Run(operation), '.') << "what did not happen can be done again";
      }
      EXPECT_EQ(ContentsOf(ledger), after);
    }
    ledger.Restore();
    EXPECT_FALSE(RunAndDie(ledger, operation, places));
  }
}

}  // namespace
