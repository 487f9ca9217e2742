#include <gtest/gtest.h>

#include <csignal>

#include <sys/wait.h>
#include <unistd.h>

#include "support/Ledger.h"

using namespace tsv;
using namespace tsv::test;

namespace {

// Dies at one place of what it observes: each statement has two, just before and just after it runs.
class Killer : public db::StatementObserver {
 public:
  explicit Killer(int place) : place_(place) {}
  void AboutToRun(std::string_view) override { Step(); }
  void HasRun(std::string_view, std::int32_t) override { Step(); }

 private:
  void Step() {
    if (place_-- == 0) kill(getpid(), SIGKILL);
  }
  int place_;
};

// Posts in a process of its own; whether it was killed. No database is open in this process meanwhile.
bool PostAndDie(const Company& company, int place) {
  const pid_t child = fork();
  if (child == 0) {
    int status = 1;
    try {
      Tesovia tesovia;
      tesovia.InicializarTS(company.Path(), "ana", "segredo");
      CurrentSession().BancoDeDados->Observe(std::make_shared<Killer>(place));
      Post(tesovia, {Day(2008, 7, 5), Cents(-1234), "1.1.2", "00", "1.1", 1});
      status = 0;
    } catch (...) {
    }
    _exit(status);
  }
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_TRUE(WIFSIGNALED(status) || (WIFEXITED(status) && WEXITSTATUS(status) == 0));
  return WIFSIGNALED(status);
}

TEST(Kill, APostingIsWholeOrNotThereAtAll) {
  const Company company;
  OnAnotherThread([&] {
    Tesovia tesovia;
    tesovia.InicializarTS(company.Path(), "ana", "segredo");
    for (const char* account : {"1", "1.1", "1.1.2"})
      Post(tesovia, {Day(2008, 7, 20), Cents(500), account, "0", "1", 1});
  });
  std::size_t before = ExpectSound(company);
  int place = 0;
  bool committed = false;
  while (PostAndDie(company, place)) {
    SCOPED_TRACE("killed at place " + std::to_string(place++));
    const std::size_t after = ExpectSound(company);
    EXPECT_TRUE(after == before || after == before + 1);
    EXPECT_FALSE(committed && after == before) << "a committed posting was lost";
    committed = after == before + 1;
    before = after;
  }
  EXPECT_TRUE(committed) << "the last place stands after the commit";
  EXPECT_GE(place, 18);
  EXPECT_EQ(ExpectSound(company), before + 1);
}

}  // namespace
