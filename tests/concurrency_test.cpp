#include <gtest/gtest.h>

#include <future>
#include <map>
#include <random>

#include "common/Journal.h"
#include "support/Operations.h"
#include "types/Conversions.h"

using namespace tsv;
using namespace tsv::test;

namespace {

constexpr int kUsers = 4;
constexpr int kChanges = 60;  // by each

// One of the changes that a user makes to what he sees, and what the journal shall tell of it.
struct Attempt {
  Operation operation;
  std::int32_t version = 0;
  Module1::ACAO action = Module1::kInclusao;
  int rows = 1;
};

class User {
 public:
  User(const Company& company, unsigned seed) : random_(seed) {
    ledger_.InicializarTS(company.Path(), "ana", "segredo");
  }

  // The rows that the journal must have of what he did, by action. What is refused he leaves for something else.
  std::map<std::int32_t, int> Work() {
    std::map<std::int32_t, int> written;
    for (int changes = 0; changes < kChanges;) {
      const Attempt attempt = AnyAttempt();
      const Erro erro = ErrorOf([&] { attempt.operation.run(ledger_, attempt.version); });
      if (erro.Numero() == 0) {
        written[attempt.action] += attempt.rows;
        ++changes;
      } else if (erro.Numero() < TS_ERRO_LOGIN || erro.Numero() > TS_ERRO_ESTORNO) {
        ADD_FAILURE() << erro;
        break;
      }
    }
    return written;
  }

 private:
  int Below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }

  Attempt AnyAttempt() {
    const int choice = Below(10);
    if (choice < 3) return {Posted("posting", 1 + Below(28))};
    if (choice < 4) return {Transferred("transfer"), 0, Module1::kInclusao, 2};
    const auto rows = ledger_.AbrirRecordsetTS("Select * From Lancamentos Where Estornado = False And Estorno = False",
                                               db::dbOpenSnapshot);
    if (rows->EndOfFile()) return {Posted("posting", 1)};
    rows->MoveLast();
    const int place = Below(rows->RecordCount());
    rows->MoveFirst();
    for (int i = 0; i < place; ++i) rows->MoveNext();
    CLancamento entry;
    entry.CarregarDeRegistro(*rows);

    const std::int32_t id = entry.Id();
    const std::int32_t version = entry.IdConcorrencia();
    const bool isLeg = entry.Transferencia() != 0;
    const int legs = isLeg ? 2 : 1;
    if (choice < 5) return {Deleted("deletion", id), version, Module1::kExclusao, legs};
    if (choice < 7) return {Reversed("reversal", id), version, Module1::kEstorno, 2 * legs};
    const std::int64_t cents = entry.Valor().TenThousandths() / 100;
    const Date date = ToDate(entry.Data());
    const Date otherDay = Day(2008, 7, 1 + Below(28));
    switch (Below(3)) {
      case 0:
        return {Settled("settlement", id, BAIXA_NAO_REALIZADO, cents, date), version,
                isLeg ? Module1::kBaixaTotal : Module1::kBaixaNaoRealizado, legs};
      case 1:
        if (!isLeg)
          return {Settled("settlement", id, BAIXA_PARCIAL, cents / 2, otherDay), version, Module1::kBaixaParcial};
        [[fallthrough]];
      default:
        return {Settled("settlement", id, BAIXA_TOTAL, cents, isLeg ? date : otherDay), version, Module1::kBaixaTotal,
                legs};
    }
  }

  Tesovia ledger_;
  std::mt19937 random_;
};

TEST(Concurrency, ManyUsersWorkAtOnce) {
  const BusyLedger ledger;
  std::map<std::int32_t, int> written = {{Module1::kInclusao, StoredSerial(*ledger.Open())}};
  std::vector<std::future<std::map<std::int32_t, int>>> users;
  for (unsigned seed = 1; seed <= kUsers; ++seed) {
    users.push_back(std::async(std::launch::async, [&, seed] { return User(ledger, seed).Work(); }));
  }
  for (auto& user : users) {
    for (const auto& [action, rows] : user.get()) written[action] += rows;
  }
  ExpectSound(ledger);
  const auto database = ledger.Open();
  int all = 0;
  for (const auto& [action, rows] : written) {
    EXPECT_EQ(Count(*database, "HistoricosDeLancamentos WHERE IdAcao = " + std::to_string(action)), rows);
    all += rows;
  }
  EXPECT_EQ(Count(*database, "HistoricosDeLancamentos"), all);
}

}  // namespace
