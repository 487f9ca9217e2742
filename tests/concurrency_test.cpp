#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <future>
#include <set>

#include "support/Ledger.h"

using namespace tsv;
using namespace tsv::test;

namespace {

// Another user's session on a thread of its own, in which it works until it is destroyed.
class OtherUser {
 public:
  OtherUser(const Company& company, Posting posting)
      : done_(std::async(std::launch::async, [&company, posting = std::move(posting)] {
          Tesovia tesovia;
          return ErrorOf([&] {
            tesovia.InicializarTS(company.Path(), "ana", "segredo");
            Post(tesovia, posting);
          });
        })) {}

  void WaitAtMost(std::chrono::milliseconds time) { done_.wait_for(time); }
  Erro Result() { return done_.get(); }

 private:
  std::future<Erro> done_;
};

const Posting kMine = {Day(2008, 7, 10), Cents(1000), "1.1", "0", "1", 1};
const Posting kTheirs = {Day(2008, 7, 5), Cents(70), "1", "0", "1", 1};

constexpr const char* kLost =
    "Erro de bloqueio. Informações de controle do sistema estavam em uso por outro usuário. Tente novamente.";

class ConcurrencyTest : public LedgerTest {
 protected:
  ConcurrencyTest() {
    Post({Day(2008, 7, 1), Cents(500), "1.1", "0", "1", 1});
    Post({Day(2008, 7, 20), Cents(300), "1.1", "00", "1.1", 1});
    Watch();
  }

  // Runs the action once, before the statement that begins with the text.
  template <typename Action>
  void Before(std::string beginning, Action action) {
    recorder->before = [beginning = std::move(beginning), action, done = false](std::string_view text) mutable {
      if (done || !text.starts_with(beginning)) return;
      done = true;
      action();
    };
  }
};

TEST_F(ConcurrencyTest, AnotherUserAtEachStatementOfAPosting) {
  std::size_t entries = 2;
  std::set<std::string> winners;
  bool reached = true;
  for (std::size_t place = 0; reached; ++place) {
    SCOPED_TRACE("before statement " + std::to_string(place));
    reached = false;
    std::unique_ptr<OtherUser> other;
    recorder->ran.clear();
    recorder->before = [&, next = std::size_t{0}](std::string_view) mutable {
      if (next++ != place) return;
      reached = true;
      other = std::make_unique<OtherUser>(company, kTheirs);
      // Inside the transaction the other user cannot finish: he reads, and waits to write.
      const auto texts = recorder->Texts();
      const bool writing = std::find(texts.begin(), texts.end(), "BeginTrans") != texts.end();
      other->WaitAtMost(writing ? std::chrono::milliseconds(200) : std::chrono::minutes(1));
    };
    const Erro mine = ErrorOf([&] { Post(kMine); });
    recorder->before = nullptr;
    if (!reached) break;
    const Erro theirs = other->Result();

    entries += (mine.Numero() == 0) + (theirs.Numero() == 0);
    EXPECT_EQ(ExpectSound(company), entries);
    for (const Erro& erro : {mine, theirs}) EXPECT_TRUE(erro.Numero() == 0 || erro.Descricao() == kLost) << erro;
    winners.insert(std::string(mine.Numero() == 0 ? "mine" : "") + (theirs.Numero() == 0 ? "theirs" : ""));
  }
  EXPECT_EQ(winners, (std::set<std::string>{"mine", "theirs", "minetheirs"}));
}

TEST_F(ConcurrencyTest, TheSecondOfTwoPostingsLosesTheSerial) {
  Before("BeginTrans", [&] { EXPECT_EQ(OtherUser(company, kTheirs).Result().Numero(), 0); });
  ExpectErro(ErrorOf([&] { Post(kMine); }), TS_ERRO_LANCAMENTO, kLost, "em Tesovia.FazerLancamentoTS ");
  EXPECT_EQ(ExpectSound(company), 3u);
  EXPECT_EQ(StoredSerial(*company.Open()), 3);
  EXPECT_EQ(Post(kMine)->Id(), 4);
}

// Each of these leaves a sound ledger and the serial as it was, but not the balances that the posting has read.
TEST_F(ConcurrencyTest, ADeletionBehindTheSerialIsNoticed) {
  Before("BeginTrans", [&] {
    company.Execute("DELETE * FROM Lancamentos WHERE Id = 1");
    company.Execute(
        "UPDATE Lancamentos SET SaldoConta = SaldoConta - 5, SaldoParceiroComl = SaldoParceiroComl - 5, "
        "SaldoGlobal = SaldoGlobal - 5 WHERE Id = 2");
  });
  ExpectErro(ErrorOf([&] { Post(kMine); }), TS_ERRO_LOGIN, "", "em Module1.VerificarApos");
  EXPECT_EQ(recorder->ran.back().text, "Rollback");
  EXPECT_EQ(ExpectSound(company), 1u);
}

TEST_F(ConcurrencyTest, ASettlementBehindTheSerialIsNoticed) {
  Before("BeginTrans", [&] {
    company.Execute(
        "UPDATE Lancamentos SET Realizado = 'N', SaldoConta = 0, SaldoRecDesp = 0, SaldoCentroCusto = 0, "
        "SaldoParceiroComl = 0, SaldoGlobal = 0 WHERE Id = 1");
    company.Execute(
        "UPDATE Lancamentos SET SaldoConta = SaldoConta - 5, SaldoParceiroComl = SaldoParceiroComl - 5, "
        "SaldoGlobal = SaldoGlobal - 5 WHERE Id = 2");
  });
  EXPECT_EQ(ErrorOf([&] { Post(kMine); }).Numero(), TS_ERRO_LOGIN);
  EXPECT_EQ(ExpectSound(company), 2u);
  EXPECT_EQ(Post(kMine)->SaldoConta(), Cents(1000));
  EXPECT_EQ(ExpectSound(company), 3u);
}

TEST_F(ConcurrencyTest, ADeactivationBeforeTheTransactionStopsThePosting) {
  Before("BeginTrans", [&] { company.Execute("UPDATE Contas SET Inativa = True WHERE Codigo = '1.1'"); });
  EXPECT_EQ(ErrorOf([&] { Post(kMine); }).Numero(), TS_ERRO_LOGIN);
  EXPECT_EQ(ExpectSound(company), 2u);
}

TEST_F(ConcurrencyTest, ManyUsersPostAtOnce) {
  constexpr int kUsers = 4;
  constexpr int kAttempts = 40;
  std::vector<std::future<int>> users;
  for (int user = 0; user < kUsers; ++user) {
    users.push_back(std::async(std::launch::async, [&, user] {
      Tesovia mine;
      mine.InicializarTS(company.Path(), "ana", "segredo");
      int posted = 0;
      for (int i = 0; i < kAttempts; ++i) {
        const Posting posting = {Day(2008, 7, 1 + (i * 7 + user) % 28),
                                 Cents(100 * (i - 20) + 1),
                                 i % 2 ? "1" : "1.1",
                                 "0",
                                 i % 3 ? "1" : "",
                                 i % 4};
        const Erro erro = ErrorOf([&] { test::Post(mine, posting.partner == 3 ? kTheirs : posting); });
        posted += erro.Numero() == 0;
        EXPECT_TRUE(erro.Numero() == 0 || erro.Descricao() == kLost) << erro;
      }
      return posted;
    }));
  }
  std::size_t entries = 2;
  for (auto& user : users) entries += static_cast<std::size_t>(user.get());
  EXPECT_GT(entries, 2u);
  EXPECT_EQ(ExpectSound(company), entries);
}

}  // namespace
