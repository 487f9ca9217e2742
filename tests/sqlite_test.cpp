// What the embedded engine promises: rules under their numbers, transactions, files, recordsets, and its caches.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>

#include "db/sqlite/SqliteDatabase.h"
#include "support/Errors.h"
#include "support/JsonValues.h"
#include "support/Listed.h"
#include "support/TemporaryLedger.h"

namespace tsv::test {
namespace {

using std::chrono::milliseconds;

// One account, one type, and entries 1, 2, 3 on them, in January 2024.
class EngineTest : public ::testing::Test {
 protected:
  EngineTest() {
    InsertCodes(user, "Contas", {"1", "1.1"});
    InsertCodes(user, "TiposMovimentacoes", {"7"});
    InsertPartners(user, 1);
    for (int id = 1; id <= 3; ++id) user.Execute(Entry(id));
  }

  static std::string Entry(int id) {
    const std::string number = std::to_string(id);
    return "INSERT INTO Lancamentos (Id, CodConta, CodRecDesp, Valor, Data, Historico, DataId, SaldoConta, "
           "SaldoRecDesp, SaldoGlobal, IdUsuario) VALUES (" +
           number + ", '1', '7', 10, #01/0" + number + "/2024#, 'VENDA', '2024010" + number + "00000000" + number +
           "', 10, 10, 10, 1)";
  }

  std::int32_t Count(User& by, std::string_view from = "Lancamentos") {
    return ToLong(by.Value("SELECT Count(*) FROM " + std::string(from)));
  }

  Erro Refused(std::string_view sql) {
    return ErrorOf([&] { user.Execute(sql); });
  }

  // What data/engine.txt has under the name: each line the number of an error (0: none), what its description names,
  // and the statement that raises it.
  void ExpectListed(const std::string& name) {
    for (const auto& line : Listed("engine.txt", name)) {
      const std::string& sql = line.at(2);
      const Erro erro = sql.starts_with("SELECT") ? ErrorOf([&] { user.Open(sql); }) : Refused(sql);
      EXPECT_EQ(erro.Numero(), std::stoi(line[0])) << sql << '\n' << erro;
      EXPECT_NE(erro.Descricao().find(line[1]), std::string::npos) << sql << '\n' << erro;
    }
  }

  // Likewise each line a value and the statement that selects it.
  static void ExpectValues(User& by, const std::string& name) {
    for (const auto& line : Listed("engine.txt", name)) {
      EXPECT_EQ(ShownResult([&] { return by.Value(line.at(1)); }), line[0]) << line[1];
    }
  }

  TemporaryLedger ledger;
  User user = ledger.Open();
};

TEST_F(EngineTest, RefusesByNumberAndNamesTheField) {
  ExpectListed("statements refused");
  ExpectListed("functions that raise");
  EXPECT_EQ(ErrorOf([&] { user.Open("DELETE FROM Lancamentos"); }).Numero(), 3219);
  EXPECT_EQ(ErrorOf([&] { user.Open("DELETE FROM Lancamentos", db::dbOpenForwardOnly); }).Numero(), 3219);
  EXPECT_EQ(Refused("SELECT * FROM Lancamentos").Numero(), 3065);
  EXPECT_EQ(Count(user), 3);  // the connection goes on
}

TEST_F(EngineTest, AStatementChangesAllItsRowsOrNone) {
  EXPECT_EQ(Refused("UPDATE Lancamentos SET Documento = IIF(Id = 3, '1234567890123456', 'X')").Numero(), 3163);
  EXPECT_EQ(Count(user, "Lancamentos WHERE Documento = 'X'"), 0);
  EXPECT_EQ(user.database->RecordsAffected(), 0);
  user.Execute("UPDATE Lancamentos SET Documento = 'X' WHERE Id > 1");
  EXPECT_EQ(user.database->RecordsAffected(), 2);
}

TEST_F(EngineTest, GivesTheListedValues) {
  user.Execute("INSERT INTO HistoricosDeLancamentos (IdUsuario, DataHora, IdAcao, Id) VALUES (1, #01/01/2024#, 1, 1)");
  ExpectValues(user, "values of entries and journal");
  user.Execute("UPDATE Lancamentos SET Estorno = NULL, Documento = ''");
  EXPECT_EQ(Count(user, "Lancamentos WHERE Estorno = False AND Documento = ''"), 3);
}

TEST_F(EngineTest, ANewLedgerHoldsOnlyWhatTransfersNeed) {
  const TemporaryLedger fresh;
  User other = fresh.Open();
  ExpectValues(other, "values of a new ledger");
}

TEST_F(EngineTest, ValuesComeBackAsTheyWentIn) {
  user.Execute("CREATE TABLE Tudo (B YESNO, Y BYTE, L LONG, C CURRENCY, D DOUBLE, M DATETIME, T TEXT(20))");
  user.Execute(
      "INSERT INTO Tudo VALUES (True, 255, -2147483648, -922337203685477.5808, 0.1, #12/29/1899 06:00:00#, 'Água "
      "''é''')");
  user.Execute("INSERT INTO Tudo (L) VALUES (Null)");
  const auto rows = user.Open("SELECT * FROM Tudo ORDER BY L DESC");
  const std::pair<Variant, db::DataTypeEnum> expected[] = {
      {true, db::DataTypeEnum::dbBoolean},
      {std::uint8_t{255}, db::DataTypeEnum::dbByte},
      {std::numeric_limits<std::int32_t>::min(), db::DataTypeEnum::dbLong},
      {Currency::FromTenThousandths(std::numeric_limits<std::int64_t>::min()), db::DataTypeEnum::dbCurrency},
      {0.1, db::DataTypeEnum::dbDouble},
      {Date(-1.25), db::DataTypeEnum::dbDate},
      {std::string("Água 'é'"), db::DataTypeEnum::dbText}};
  for (std::size_t i = 0; i < std::size(expected); ++i) {
    EXPECT_EQ(rows->Fields(i).Value(), expected[i].first) << i;
    EXPECT_EQ(rows->Fields(i).Type(), expected[i].second) << i;
  }
  rows->MoveNext();
  for (std::size_t i = 1; i < std::size(expected); ++i) EXPECT_EQ(rows->Fields(i).Value(), Variant(Null())) << i;
}

TEST_F(EngineTest, LevelsOfTransactionsNest) {
  db::Workspace& workspace = user.Workspace();
  EXPECT_EQ(ErrorOf([&] { workspace.CommitTrans(); }).Numero(), 3034);
  EXPECT_EQ(ErrorOf([&] { workspace.Rollback(); }).Numero(), 3034);

  workspace.BeginTrans();
  user.Execute("DELETE FROM Lancamentos WHERE Id = 1");
  workspace.BeginTrans();
  user.Execute("DELETE FROM Lancamentos WHERE Id = 2");
  workspace.Rollback();
  EXPECT_EQ(Count(user), 2);
  workspace.BeginTrans();
  user.Execute("DELETE FROM Lancamentos WHERE Id = 3");
  workspace.CommitTrans();
  EXPECT_EQ(Count(user), 1);
  workspace.Rollback();  // the inner commit goes with it
  EXPECT_EQ(Count(user), 3);

  workspace.BeginTrans();
  user.Execute("DELETE FROM Lancamentos WHERE Id = 1");
  workspace.CommitTrans();
  EXPECT_EQ(Count(user), 2);
}

TEST_F(EngineTest, ATransactionCoversAllDatabasesOfTheWorkspace) {
  const TemporaryLedger second;
  const auto other = user.engine.OpenDatabase(second.Path(), false, false, TemporaryLedger::kConnect);
  const auto closed = user.engine.OpenDatabase(second.Path(), false, true, TemporaryLedger::kConnect);
  closed->Close();
  user.Workspace().BeginTrans();
  user.Execute("DELETE FROM Lancamentos");
  other->Execute("UPDATE Serial SET Serial = 5");
  user.Workspace().Rollback();
  EXPECT_EQ(Count(user), 3);
  EXPECT_EQ(other->OpenRecordset("SELECT Serial FROM Serial")->Fields("Serial").Value(), Variant(0));

  user.Workspace().BeginTrans();
  user.Execute("DELETE FROM Lancamentos");
  other->Close();  // rolls back its part
  user.Workspace().CommitTrans();
  EXPECT_EQ(Count(user), 0);
}

TEST_F(EngineTest, AWriterWaitsForItsTurnAndReadersForNothing) {
  User impatient = ledger.Open(milliseconds(30));
  user.Workspace().BeginTrans();
  user.Execute("DELETE FROM Lancamentos");
  EXPECT_EQ(ErrorOf([&] { impatient.Workspace().BeginTrans(); }).Numero(), 3260);
  EXPECT_EQ(ErrorOf([&] { impatient.Workspace().Rollback(); }).Numero(), 3034);
  EXPECT_EQ(ErrorOf([&] { impatient.Execute("UPDATE Serial SET Serial = 1"); }).Numero(), 3260);
  EXPECT_EQ(Count(impatient), 3);
  user.Workspace().CommitTrans();
  EXPECT_EQ(Count(impatient), 0);
  impatient.Execute("UPDATE Serial SET Serial = 1");
}

TEST_F(EngineTest, AnOpenStreamDoesNotKeepItsUserFromWriting) {
  User other = ledger.Open();
  const auto stream = user.Open("SELECT Id FROM Lancamentos ORDER BY Id", db::dbOpenForwardOnly);
  other.Execute("UPDATE Serial SET Serial = 8");
  user.Workspace().BeginTrans();
  user.Execute("UPDATE Serial SET Serial = Serial + 1 WHERE Serial = 8");
  EXPECT_EQ(user.database->RecordsAffected(), 1);
  user.Execute("DELETE FROM Lancamentos");
  user.Workspace().CommitTrans();
  for (int id = 1; id <= 3; ++id, stream->MoveNext()) EXPECT_EQ(stream->Fields("Id").Value(), Variant(id));
  EXPECT_TRUE(stream->EndOfFile());
}

TEST_F(EngineTest, NothingRunsInATransactionThatTheDiskEnded) {
  const auto limit = [](rlim_t bytes) {
    rlimit files{};
    getrlimit(RLIMIT_FSIZE, &files);
    files.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &files);
  };
  std::signal(SIGXFSZ, SIG_IGN);
  db::Workspace& workspace = user.Workspace();
  workspace.BeginTrans();
  user.Execute("DELETE FROM Lancamentos WHERE Id = 1");
  workspace.BeginTrans();
  user.Execute("DELETE FROM Lancamentos WHERE Id = 2");
  workspace.CommitTrans();
  limit(1);
  EXPECT_EQ(ErrorOf([&] { workspace.CommitTrans(); }).Numero(), 3043);
  limit(RLIM_INFINITY);
  EXPECT_EQ(Refused("DELETE FROM Lancamentos WHERE Id = 3").Numero(), 3043);
  workspace.Rollback();
  EXPECT_EQ(Count(user), 3);
  user.Execute("DELETE FROM Lancamentos WHERE Id = 3");
  EXPECT_EQ(Count(user), 2);
}

struct Watcher : db::StatementObserver {
  std::vector<std::string> seen;
  std::string failBefore;
  std::string failAfter;

  void AboutToRun(std::string_view text) override {
    if (text == failBefore) throw Erro(1);
  }
  void HasRun(std::string_view text, std::int32_t affected) override {
    seen.push_back(std::string(text) + " " + std::to_string(affected));
    if (text == failAfter) throw Erro(2);
  }
};

TEST_F(EngineTest, ObserversSeeEverythingAndCannotHoldALevelOpen) {
  const auto watcher = std::make_shared<Watcher>();
  user.database->Observe(watcher);
  user.Workspace().BeginTrans();
  user.Execute("DELETE FROM Lancamentos WHERE Id < 3");
  user.Open("SELECT Id FROM Lancamentos");
  user.Workspace().CommitTrans();
  EXPECT_EQ(Refused("DELETE FROM Nada").Numero(), 3078);
  const std::vector<std::string> expected = {"BeginTrans 0", "DELETE FROM Lancamentos WHERE Id < 3 2",
                                             "SELECT Id FROM Lancamentos 1", "CommitTrans 0"};
  EXPECT_EQ(watcher->seen, expected);

  User other = ledger.Open(milliseconds(30));
  const auto nobodyWrites = [&] {
    return ErrorOf([&] { other.Execute("UPDATE Serial SET Serial = 1"); }).Numero() == 0;
  };
  watcher->failAfter = "BeginTrans";
  EXPECT_EQ(ErrorOf([&] { user.Workspace().BeginTrans(); }).Numero(), 2);
  EXPECT_TRUE(nobodyWrites());
  watcher->failAfter.clear();
  watcher->failBefore = "Rollback";
  user.Workspace().BeginTrans();
  EXPECT_EQ(ErrorOf([&] { user.Workspace().Rollback(); }).Numero(), 1);
  EXPECT_TRUE(nobodyWrites());
}

TEST_F(EngineTest, ClientsQueriesTakeParameters) {
  const auto query = user.database->CreateQueryDef("SELECT Id FROM Lancamentos WHERE Id >= [Menor] AND Id <= [Maior]");
  query->Parameters("menor").Value = 2;
  const Erro missing = ErrorOf([&] { query->OpenRecordset(); });
  EXPECT_EQ(missing.Numero(), 3061);
  EXPECT_NE(missing.Descricao().find("1"), std::string::npos);
  query->Parameters(1).Value = 2;
  EXPECT_EQ(query->OpenRecordset()->Fields(std::size_t{0}).Value(), Variant(2));
  EXPECT_EQ(ErrorOf([&] { query->Parameters("outro"); }).Numero(), 3265);
  EXPECT_EQ(ErrorOf([&] { query->Parameters(2); }).Numero(), 3265);
  EXPECT_EQ(ErrorOf([&] { user.database->QueryDefs("Outra"); }).Numero(), 3265);
  EXPECT_EQ(ErrorOf([&] { user.Open("SELECT Id FROM Lancamentos WHERE Id = [Menor]"); }).Numero(), 3061);
}

TEST_F(EngineTest, KeptRecordsetsMoveBothWays) {
  const auto rows = user.Open("SELECT Id FROM Lancamentos ORDER BY Id");
  const auto id = [&] { return ToLong(rows->Fields("id").Value()); };
  EXPECT_EQ(rows->RecordCount(), 1);
  rows->MoveLast();
  EXPECT_EQ(rows->RecordCount(), 3);
  EXPECT_EQ(id(), 3);
  rows->MoveNext();
  EXPECT_TRUE(rows->EndOfFile());
  EXPECT_EQ(ErrorOf(id).Numero(), 3021);
  EXPECT_EQ(ErrorOf([&] { rows->MoveNext(); }).Numero(), 3021);
  rows->MovePrevious();
  EXPECT_EQ(id(), 3);
  rows->MoveFirst();
  rows->MovePrevious();
  EXPECT_TRUE(rows->BOF());
  EXPECT_EQ(ErrorOf([&] { rows->MovePrevious(); }).Numero(), 3021);
  rows->MoveNext();
  EXPECT_EQ(id(), 1);
  EXPECT_EQ(ErrorOf([&] { rows->Fields("outro"); }).Numero(), 3265);
  EXPECT_EQ(ErrorOf([&] { rows->Fields(1); }).Numero(), 3265);
  rows->Close();
  EXPECT_EQ(ErrorOf([&] { rows->Close(); }).Numero(), 3420);
  EXPECT_EQ(ErrorOf([&] { rows->EndOfFile(); }).Numero(), 3420);

  const auto empty = user.Open("SELECT Id FROM Lancamentos WHERE Id = 0");
  EXPECT_TRUE(empty->BOF() && empty->EndOfFile());
  EXPECT_EQ(empty->RecordCount(), 0);
  EXPECT_EQ(ErrorOf([&] { empty->MoveFirst(); }).Numero(), 3021);
  EXPECT_EQ(ErrorOf([&] { empty->MoveLast(); }).Numero(), 3021);
}

TEST_F(EngineTest, StreamsMoveForward) {
  const std::string sql = "SELECT Id FROM Lancamentos WHERE Id >= 1 ORDER BY Id";
  const auto rows = user.Open(sql, db::dbOpenForwardOnly);
  const auto twin = user.Open("SELECT Id FROM Lancamentos WHERE Id >= 3 ORDER BY Id", db::dbOpenForwardOnly);
  rows->MoveFirst();
  rows->MoveNext();
  EXPECT_EQ(rows->Fields("Id").Value(), Variant(2));
  EXPECT_EQ(twin->Fields("Id").Value(), Variant(3));
  EXPECT_EQ(rows->RecordCount(), 2);
  EXPECT_EQ(ErrorOf([&] { rows->MoveFirst(); }).Numero(), 3219);
  EXPECT_EQ(ErrorOf([&] { rows->MovePrevious(); }).Numero(), 3219);
  EXPECT_EQ(ErrorOf([&] { rows->MoveLast(); }).Numero(), 3219);
  rows->MoveNext();
  rows->MoveNext();
  EXPECT_TRUE(rows->EndOfFile());
  EXPECT_EQ(ErrorOf([&] { rows->MoveNext(); }).Numero(), 3021);
  EXPECT_EQ(ErrorOf([&] { rows->Fields("Id").Value(); }).Numero(), 3021);

  user.database->Close();
  EXPECT_EQ(ErrorOf([&] { twin->MoveNext(); }).Numero(), 3420);
  EXPECT_EQ(ErrorOf([&] { user.Execute("DELETE FROM Lancamentos"); }).Numero(), 3420);
  EXPECT_EQ(ErrorOf([&] { user.database->Close(); }).Numero(), 3420);
}

TEST_F(EngineTest, StatementsThatDifferInValuesShareOneTemplate) {
  const auto cached = [&] {
    return std::static_pointer_cast<db::sqlite::SqliteDatabase>(user.database)->CachedStatements();
  };
  user.Open("SELECT Id FROM Lancamentos WHERE Historico = 'A' AND Valor > 1.5");
  const std::size_t before = cached();
  for (const char* sql : {"SELECT Id FROM Lancamentos WHERE Historico = 'B' AND Valor > -20.5",
                          "SELECT Id FROM Lancamentos WHERE Historico = 'VENDA''S' AND Valor > 9.99"}) {
    user.Open(sql);
  }
  EXPECT_EQ(cached(), before);
  EXPECT_EQ(Count(user, "(SELECT TOP 1 Id FROM Lancamentos) AS T"), 1);
  EXPECT_EQ(Count(user, "(SELECT TOP 2 Id FROM Lancamentos) AS T"), 2);
  EXPECT_EQ(Count(user, "(SELECT TOP 1 Id FROM Lancamentos) AS T"), 1);
  EXPECT_EQ(cached(), before + 2);
  for (int i = 0; i < 400; ++i) user.Open("SELECT Id AS C" + std::to_string(i) + " FROM Lancamentos");
  EXPECT_EQ(cached(), db::jet::TemplateCache<db::sqlite::Template>::kCapacity);
  EXPECT_EQ(user.Open("SELECT Id AS C3 FROM Lancamentos")->Fields("C3").Value(), Variant(1));
}

TEST_F(EngineTest, TablesOfClientsAreKnownToAllAndSurvive) {
  User other = ledger.Open();
  other.Open("SELECT Id FROM Lancamentos");
  user.Workspace().BeginTrans();
  user.Execute("CREATE TABLE Metas (Codigo TEXT(5) PRIMARY KEY, Alvo CURRENCY NOT NULL)");
  user.Execute("INSERT INTO Metas VALUES ('A', 12.34)");
  user.Workspace().Rollback();
  EXPECT_EQ(Refused("INSERT INTO Metas VALUES ('A', 12.34)").Numero(), 3078);

  user.Execute("CREATE TABLE Metas (Codigo TEXT(5) PRIMARY KEY, Alvo CURRENCY NOT NULL, Unico LONG UNIQUE)");
  other.Execute("INSERT INTO Metas VALUES ('a', 0.1, 1)");
  ExpectListed("tables of clients");
  EXPECT_EQ(ledger.Open().Value("SELECT Alvo FROM Metas"), Variant(Currency::FromTenThousandths(1000)));
}

}  // namespace
}  // namespace tsv::test
