#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <random>
#include <sstream>
#include <thread>

#include <sys/wait.h>
#include <unistd.h>

#include "common/Journal.h"
#include "db/EngineError.h"
#include "support/Environment.h"
#include "support/Operations.h"
#include "types/Conversions.h"

using namespace tsv;
using namespace tsv::test;

namespace {

constexpr unsigned kThreads = 4;
constexpr unsigned kProcesses = 8;
constexpr std::int32_t kNewest = 40;  // among so many entries users choose, so that they meet

// What users did and met, as lines with how often: "row ACTION ENTRY" and "rows ACTION" that the journal must have,
// "doubtful ACTION" for rows that it may have, "done ...", "refused ...", "lost ..." and "wrong ...".
using Counts = std::map<std::string, int>;

void Tell(const Counts& counts, std::ostream& out) {
  for (const auto& [line, count] : counts) out << count << ' ' << line << '\n';
}

void Hear(std::istream& in, Counts& counts) {
  int count = 0;
  for (std::string line; in >> count && std::getline(in >> std::ws, line);) counts[line] += count;
}

std::string Line(const char* kind, std::int32_t action, std::int32_t id = 0) {
  return std::string(kind) + " " + std::to_string(action) + (id == 0 ? "" : " " + std::to_string(id));
}

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

  // What is refused he leaves for something else. When the connection is lost he goes on with what he has, and does not
  // end before that works.
  Counts Work(const std::function<bool()>& isOver) {
    Counts counts;
    for (bool lost = false; lost || !isOver();) {
      Attempt attempt;
      Ids told;
      const Erro erro = ErrorOf([&] {
        attempt = AnyAttempt();
        told = attempt.operation.run(ledger_, attempt.version);
      });
      if (erro.Numero() != 0) {
        Count(erro, attempt, counts);
        if (!IsLost(erro)) continue;
        lost = true;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        continue;
      }
      if (std::exchange(lost, false)) ++counts["done after a lost connection"];
      ++counts["done " + attempt.operation.name];
      counts[Line("rows", attempt.action)] += attempt.rows;
      if (attempt.operation.id != 0) told.push_back(attempt.operation.id);
      for (const std::int32_t id : told) ++counts[Line("row", attempt.action, id)];
    }
    return counts;
  }

 private:
  static bool IsLost(const Erro& erro) {
    return erro.Numero() == static_cast<std::int32_t>(db::EngineError::ConnectionLost) ||
           erro.Numero() == static_cast<std::int32_t>(db::EngineError::ConnectionFailed);
  }

  static void Count(const Erro& erro, const Attempt& attempt, Counts& counts) {
    const char* kind = IsRefusal(erro) ? "refused " : IsLost(erro) ? "lost " : "wrong ";
    std::string text = kind + std::to_string(erro.Numero()) + " " + erro.Descricao();
    std::replace(text.begin(), text.end(), '\n', ' ');
    ++counts[text];
    if (text.find("Não se sabe") != std::string::npos) counts[Line("doubtful", attempt.action)] += attempt.rows;
  }

  std::int32_t Below(std::int32_t limit) {
    return static_cast<std::int32_t>(random_() % static_cast<std::uint32_t>(limit));
  }

  Attempt AnyAttempt() {
    const int choice = Below(10);
    if (choice < 3) return {Posted("posting", 1 + Below(28))};
    if (choice < 4) return {Transferred("transfer"), 0, Module1::kInclusao, 2};
    const auto serial = ledger_.AbrirRecordsetTS("Select Serial From Serial", db::dbOpenSnapshot);
    const std::int32_t first = ToLong(serial->Fields("Serial").Value()) - Below(kNewest);
    const char* state = choice < 5 ? "" : choice < 7 ? "Realizado <> 'N' And " : "Realizado = '?' And ";
    const auto rows =
        ledger_.AbrirRecordsetTS("Select Top 1 * From Lancamentos Where Estornado = False And Estorno = False And " +
                                     std::string(state) + "Id >= " + std::to_string(first) + " Order By Id",
                                 db::dbOpenSnapshot);
    if (rows->EndOfFile()) return {Posted("posting", 1)};
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
        return {Settled("settlement as not realised", id, BAIXA_NAO_REALIZADO, cents, date), version,
                isLeg ? Module1::kBaixaTotal : Module1::kBaixaNaoRealizado, legs};
      case 1:
        if (!isLeg)
          return {Settled("partial settlement", id, BAIXA_PARCIAL, cents / 2, otherDay), version,
                  Module1::kBaixaParcial};
        [[fallthrough]];
      default:
        return {Settled("settlement", id, BAIXA_TOTAL, cents, isLeg ? date : otherDay), version, Module1::kBaixaTotal,
                legs};
    }
  }

  Tesovia ledger_;
  std::mt19937 random_;
};

// The users' work in a process each, until what this one does meanwhile is over.
Counts WorkOfProcesses(const Company& company, const std::function<void()>& meanwhile) {
  const TemporaryFolder folder;
  const std::string over = folder.Path("over");
  std::map<pid_t, std::string> users;
  for (unsigned seed = 1; seed <= kProcesses; ++seed) {
    const std::string report = folder.Path(std::to_string(seed));
    const pid_t user = fork();
    if (user == 0) {
      bool told = false;
      const Erro erro = ErrorOf([&] {
        std::ofstream out(report);
        Tell(User(company, seed).Work([&] { return std::filesystem::exists(over); }), out);
        told = !out.flush().fail();
      });
      if (!told) std::cerr << erro << std::endl;
      _exit(told ? 0 : 1);
    }
    users[user] = report;
  }
  meanwhile();
  std::ofstream(over).flush();
  Counts counts;
  for (const auto& [user, report] : users) {
    int status = 0;
    waitpid(user, &status, 0);
    EXPECT_EQ(status, 0) << "of a user's process";
    std::ifstream in(report);
    Hear(in, counts);
  }
  return counts;
}

// Every success is there once with its rows, nothing else is, and no user met an error that he need not expect.
void ExpectInLedger(const Company& company, Counts& told, int before) {
  const auto begin = std::chrono::steady_clock::now();
  const std::size_t entries = ExpectSound(company);
  told[Line("rows", Module1::kInclusao)] += before;
  Counts found;
  const auto database = company.Open();
  const auto rows = database->OpenRecordset("Select IdAcao, Id From HistoricosDeLancamentos", db::dbOpenForwardOnly);
  for (; !rows->EndOfFile(); rows->MoveNext()) {
    const std::int32_t action = ToLong(rows->Fields("IdAcao").Value());
    ++found[Line("rows", action)];
    ++found[Line("row", action, ToLong(rows->Fields("Id").Value()))];
  }
  for (const auto& [line, count] : told) {
    if (line.starts_with("row ")) {
      EXPECT_EQ(found[line], count) << line;
      continue;
    }
    std::printf("%8d %s\n", count, line.c_str());
    EXPECT_FALSE(line.starts_with("wrong ")) << line;
  }
  for (const auto& [line, count] : found) {
    if (!line.starts_with("rows ")) continue;
    EXPECT_GE(count, told[line]) << line;
    EXPECT_LE(count, told[line] + told["doubtful" + line.substr(4)]) << line;
  }
  for (const char* kind : {"posting", "transfer", "deletion", "reversal", "settlement", "partial settlement"})
    EXPECT_GT(told[std::string("done ") + kind], 0) << kind;
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
  std::printf("%8zu entries are sound, which took %.1f s to tell\n", entries, taken.count());
}

TEST(Concurrency, ManyUsersWorkAtOnce) {
  const BusyLedger ledger;
  const int before = StoredSerial(*ledger.Open());
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(2);
  std::vector<std::stringstream> reports(kThreads);
  std::vector<std::thread> users;
  for (unsigned seed = 1; seed <= kThreads; ++seed) {
    users.emplace_back([&ledger, end, seed, &report = reports[seed - 1]] {
      Tell(User(ledger, seed).Work([end] { return std::chrono::steady_clock::now() > end; }), report);
    });
  }
  Counts told;
  for (unsigned i = 0; i < kThreads; ++i) {
    users[i].join();
    Hear(reports[i], told);
  }
  ExpectInLedger(ledger, told, before);
}

TEST(Concurrency, ManyProcessesWorkAtOnce) {
  const BusyLedger ledger;
  const int before = StoredSerial(*ledger.Open());
  const std::chrono::seconds time(NumberFrom("TSV_SECONDS", 5));
  Counts told = WorkOfProcesses(ledger, [&] { std::this_thread::sleep_for(time); });
  ExpectInLedger(ledger, told, before);
}

#ifdef TSV_CLUSTER

// A server that may fall.
class OwnServer {
 public:
  OwnServer() {
    Do("start", " > " + folder_.Path("address"));
    std::string address;
    std::ifstream file(folder_.Path("address"));
    std::getline(file, address);
    before_ = LedgerPlace::UseServer(address);
  }
  ~OwnServer() {
    LedgerPlace::UseServer(before_);
    Do("stop");
  }
  OwnServer(const OwnServer&) = delete;
  OwnServer& operator=(const OwnServer&) = delete;

  void Do(const std::string& what, const std::string& output = "") const {
    const std::string command = "sh " TSV_CLUSTER " " + what + " " + folder_.Path("pg") + output;
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
  }

  void MakeReplica() const { std::ofstream(folder_.Path("pg/data/standby.signal")); }  // when it starts again

 private:
  TemporaryFolder folder_;
  std::string before_;
};

TEST(Concurrency, ServerThatFallsLosesNothing) {
  if (!LedgerPlace::OnServer()) GTEST_SKIP() << "of servers only";
  const OwnServer server;
  const BusyLedger ledger;
  const int before = StoredSerial(*ledger.Open());
  const auto falls = static_cast<int>(NumberFrom("TSV_FALLS", 2));
  std::mt19937 random(std::random_device{}());
  Counts told = WorkOfProcesses(ledger, [&] {
    for (int i = 0; i < falls; ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(1000 + random() % 1000));
      server.Do("kill");
      server.Do("resume");
    }
    std::this_thread::sleep_for(std::chrono::seconds(1));
  });
  ExpectInLedger(ledger, told, before);
  EXPECT_GE(told["done after a lost connection"], static_cast<int>(kProcesses) - 1);  // or waited in a commit
}

// A replica, which answers in its place, may not have heard of the commit.
TEST(Concurrency, CommitUnknownToAReplicaIsNotTakenForUndone) {
  if (!LedgerPlace::OnServer()) GTEST_SKIP() << "of servers only";
  const OwnServer server;
  const BusyLedger ledger;
  const auto falls = std::make_shared<Recorder>();
  falls->before = [&](std::string_view text) {
    if (text != "CommitTrans") return;
    server.Do("kill");
    server.MakeReplica();
    server.Do("resume");
  };
  Tesovia user;
  user.InicializarTS(ledger.Path(), "ana", "segredo");
  CurrentSession().BancoDeDados->Observe(falls);
  const Erro erro = ErrorOf([&] { Posted("lost", 28).run(user, 0); });
  EXPECT_EQ(erro.Numero(), static_cast<std::int32_t>(db::EngineError::ConnectionLost)) << erro;
  EXPECT_NE(erro.Descricao().find("Não se sabe"), std::string::npos) << erro;
  CurrentSession().BancoDeDados->Observe(nullptr);
  EXPECT_EQ(ErrorOf([&] { Posted("again", 28).run(user, 0); }).Numero(),
            static_cast<std::int32_t>(db::EngineError::ReadOnly));
}

// After a crash the server gives the numbers of its unfinished transactions to new ones.
TEST(Concurrency, CommitOfAnotherIsNotTakenForOnesOwn) {
  if (!LedgerPlace::OnServer()) GTEST_SKIP() << "of servers only";
  const OwnServer server;
  const BusyLedger ledger;
  const int before = StoredSerial(*ledger.Open());
  const auto falls = std::make_shared<Recorder>();
  falls->before = [&](std::string_view text) {
    if (text != "CommitTrans") return;
    server.Do("kill");
    server.Do("resume");
    for (int day = 21; day <= 23; ++day) EXPECT_EQ(ledger.Run(Posted("another", day)), '.');
  };
  Tesovia user;
  user.InicializarTS(ledger.Path(), "ana", "segredo");
  CurrentSession().BancoDeDados->Observe(falls);
  const Erro erro = ErrorOf([&] { Posted("lost", 28).run(user, 0); });
  EXPECT_EQ(erro.Numero(), static_cast<std::int32_t>(db::EngineError::ConnectionLost)) << erro;
  EXPECT_NE(erro.Descricao().find("Não se sabe"), std::string::npos) << erro;
  CurrentSession().BancoDeDados->Observe(nullptr);
  EXPECT_EQ(Count(*ledger.Open(), "Lancamentos WHERE Data = #07/28/2008#"), 0);
  Posted("again", 28).run(user, 0);
  EXPECT_EQ(StoredSerial(*ledger.Open()), before + 4);
  ExpectSound(ledger);
}

#endif

}  // namespace
