#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <future>
#include <map>
#include <memory>
#include <utility>

#include "support/Operations.h"
#include "support/Refusals.h"

using namespace tsv;
using namespace tsv::test;

namespace {

Operation Updated(const std::string& what) {
  return {.name = what, .run = [sql = "UPDATE " + what](Tesovia&, std::int32_t) {
            CurrentSession().BancoDeDados->Execute(sql, db::dbFailOnError);
            return Ids();
          }};
}

// What another user does meanwhile and how each of EveryOperation then ends, in letters (see Operations.cpp): one for
// each place before its transaction at which he may commit, from before its first read to before BeginTrans. After the
// stroke: how his own operation ends when he comes while the transaction is open. By then he has read, and must wait.
struct Meanwhile {
  Operation theirs;
  std::string endings;
};

std::vector<Meanwhile> EveryChange() {
  const Date tenth = Day(2008, 7, 10);
  const auto leg = [](const char* name, TIPO_BAIXA kind) { return Settled(name, 4, kind, 500, Day(2008, 7, 8)); };
  // clang-format off
  return {
      //                                  post  del. full  part. none rev.  tran del.  full  none  rev.
      {Posted("posting before", 3),      "..l/l ../. ..b/. ..b/. ../. ..l/l .l/l .../. .../. .../. .../l"},
      {Posted("posting after", 25),      "..l/l ../b .../. .../b ../b ..l/l .l/l .../b .../. .../b .../l"},
      {Transferred("transfer"),          "..l/l ../b ..b/b .../b ../b ..l/l .l/l .../b .../. .../b .../l"},
      // of the same entry
      {Deleted("deletion", 1),           "..b/. vj/j vuu/u vuu/u vu/u vuu/u .b/. .../. .../. .../. .../."},
      {Settled("full settlement", 1, BAIXA_TOTAL, 1000, Day(2008, 7, 15)),
                                         "..b/b vu/u vuu/u vuu/u vu/u vuu/u .b/b .../b .../. .../b .../b"},
      {Settled("partial settlement", 1, BAIXA_PARCIAL, 400, Day(2008, 7, 6)),
                                         "..b/. vu/u vuu/u vuu/u vu/u vuu/u .b/. .../. .../. .../. .../."},
      {Settled("not realised", 1, BAIXA_NAO_REALIZADO, 1000, tenth),
                                         "..b/. vu/u vuu/u vuu/u vu/u vuu/u .b/. .../. .../. .../. .../."},
      {Reversed("reversal", 1),          "..l/l vu/u vuu/u vuu/u vu/u vul/l .l/l .../b .../. .../b .../l"},
      // of another entry
      {Deleted("deletion of 2", 2),      "..b/. ../. ..b/. ..b/. ../. ..b/. .b/. .../. .../. .../. .../."},
      {Settled("move of 2", 2, BAIXA_TOTAL, -300, Day(2008, 7, 18)),
                                         "..b/b ../b ..b/. ..b/b ../b ..b/b .b/b .../b .../. .../b .../b"},
      {Reversed("reversal of 2", 2),     "..l/l ../. ..b/. ..b/. ../. ..l/l .l/l .../. .../. .../. .../l"},
      // of the transfer by its other leg
      {Deleted("deletion of 4", 4),      "..b/. ../. ..b/. .../. ../. ..b/. .b/. vmj/j vmu/u vmu/u vmu/u"},
      {leg("settlement of 4", BAIXA_TOTAL),
                                         ".../. ../. .../. .../. ../. .../. ../. v.u/u vuu/u vuu/u v.u/u"},
      {leg("4 not realised", BAIXA_NAO_REALIZADO),
                                         "..b/. ../. ..b/. .../. ../. ..b/. .b/. v.u/u vuu/u vuu/u vuu/u"},
      {Reversed("reversal of 4", 4),     "..l/. ../. ..b/. .../. ../. ..l/. .l/. vuu/u vuu/u vuu/u vuu/u"},

      {Updated("Contas SET Inativa = True WHERE Codigo = '1.1'"),
                                         "iii .. uuu uuu uu iii ii ... uuu uuu iii"},
      {Updated("Contas SET Excluida = True WHERE Codigo = '1.2'"),
                                         "... .. ... ... .. ... ee ... uuu uuu jjj"},
      {Updated("TiposMovimentacoes SET Inativo = True WHERE Codigo = '0'"),
                                         "iii .. uuu uuu uu iii .. ... ... ... ..."},
      {Updated("CentrosDeCusto SET Inativo = True WHERE Codigo = '1'"),
                                         "iii .. uuu uuu uu iii .. ... ... ... ..."},
      {Updated("ParceirosComerciais SET Inativo = True WHERE Id = 1"),
                                         "iii .. uuu uuu uu iii .. ... ... ... ..."},
      {Updated("Lancamentos SET IdConcorrencia = 9 WHERE Id = 1 Or Id = 3"),
                                         "... vu vuu vuu vu vuu .. v.u vuu vuu v.u"},
      {Updated("Lancamentos SET IdConcorrencia = 9 WHERE Id = 4"),
                                         "... .. ... ... .. ... .. ..u ..u ..u ..."},
  };
  // clang-format on
}

// Two users on one ledger, the second of whom comes at a place of the first one's operation.
class TwoUsers {
 public:
  // How the first one's operation ends if the other commits at its places before the transaction. The ledger must then
  // hold what it holds when one comes after the other, or what the other leaves alone when the first is refused.
  std::string Commit(const Operation& theirs, const Operation& mine) {
    std::string endings;
    for (std::size_t place = 0; place <= Alone(mine).reads; ++place) {
      SCOPED_TRACE("before statement " + std::to_string(place));
      ledger_.Restore();
      char their = '?';
      const char my = ledger_.Run(mine, At(place, [&] { their = ledger_.Run(theirs); }));
      EXPECT_EQ(their, '.');
      const std::string contents = ContentsOf(ledger_);
      EXPECT_EQ(contents, my == '.' ? InTurn(theirs, mine) : Alone(theirs).contents);
      endings += my;
    }
    return endings;
  }

  // How the other's operation ends if it comes while the first one's transaction is open; each time at another place.
  char Wait(const Operation& theirs, const Operation& mine) {
    const std::size_t begun = Alone(mine).reads + 1;
    const std::size_t place = begun + meetings_++ % (Alone(mine).statements - begun);
    SCOPED_TRACE("in the transaction, before statement " + std::to_string(place));
    ledger_.Restore();
    std::future<char> waiting;
    EXPECT_EQ(ledger_.Run(mine, At(place, [&] { waiting = BeginToWait(theirs); })), '.');
    const char their = waiting.get();
    const std::string contents = ContentsOf(ledger_);
    EXPECT_EQ(contents, their == '.' ? InTurn(mine, theirs) : Alone(mine).contents);
    return their;
  }

 private:
  struct Result {
    std::string contents;
    std::size_t reads = 0;  // before its transaction
    std::size_t statements = 0;
  };

  static std::shared_ptr<Recorder> At(std::size_t place, std::function<void()> action) {
    const auto recorder = std::make_shared<Recorder>();
    recorder->before = [=, next = std::size_t{0}](std::string_view) mutable {
      if (next++ == place) action();
    };
    return recorder;
  }

  const Result& Alone(const Operation& operation) {
    Result& result = alone_[operation.name];
    if (!result.contents.empty()) return result;
    ledger_.Restore();
    const auto recorder = std::make_shared<Recorder>();
    EXPECT_EQ(ledger_.Run(operation, recorder), '.');
    const auto texts = recorder->Texts();
    result.reads = static_cast<std::size_t>(std::find(texts.begin(), texts.end(), "BeginTrans") - texts.begin());
    result.statements = texts.size();
    ExpectSound(ledger_);
    return result.contents = ContentsOf(ledger_), result;
  }

  // The second user sees what the first has left.
  const std::string& InTurn(const Operation& first, const Operation& second) {
    std::string& contents = inTurn_[{first.name, second.name}];
    if (!contents.empty()) return contents;
    ledger_.Restore();
    EXPECT_EQ(ledger_.Run(first), '.');
    EXPECT_EQ(ledger_.Run(second, nullptr, true), '.');
    ExpectSound(ledger_);
    return contents = ContentsOf(ledger_);
  }

  // Comes back when the operation has read all that it reads and stands before the other's transaction.
  std::future<char> BeginToWait(const Operation& operation) {
    const auto stands = std::make_shared<std::promise<void>>();
    auto done = std::async(std::launch::async, [this, &operation, stands] {
      const auto recorder = std::make_shared<Recorder>();
      recorder->before = [stands, told = false](std::string_view text) mutable {
        if (told || text != "BeginTrans") return;
        told = true;
        stands->set_value();
      };
      return ledger_.Run(operation, recorder);
    });
    EXPECT_EQ(stands->get_future().wait_for(std::chrono::minutes(1)), std::future_status::ready);
    EXPECT_EQ(done.wait_for(std::chrono::milliseconds(5)), std::future_status::timeout) << "it did not wait";
    return done;
  }

  BusyLedger ledger_;
  std::map<std::string, Result> alone_;
  std::map<std::pair<std::string, std::string>, std::string> inTurn_;
  std::size_t meetings_ = 0;
};

TEST(Interleaving, EachOperationIsExactOrRefusedWhateverAnotherUserDoesMeanwhile) {
  TwoUsers users;
  for (const Meanwhile& change : EveryChange()) {
    const bool waits = change.endings.find('/') != std::string::npos;
    std::string endings;
    for (const Operation& mine : EveryOperation()) {
      SCOPED_TRACE(mine.name + ", meanwhile " + change.theirs.name);
      endings += (endings.empty() ? "" : " ") + users.Commit(change.theirs, mine);
      if (waits) endings += {'/', users.Wait(change.theirs, mine)};
    }
    EXPECT_EQ(endings, change.endings) << change.theirs.name;
  }
}

}  // namespace
