// What a server must not make of a transaction: half of one, or one that is reported as done and is not there.
#include <gtest/gtest.h>

#include "support/Errors.h"
#include "support/TemporaryLedger.h"
#include "types/Conversions.h"

#ifdef TSV_LIBPQ
#include <libpq-fe.h>

namespace tsv::test {
namespace {

// Ends every session on the ledger, as a server that is shut down does.
void CutOff(const std::string& address) {
  PGconn* connection = PQconnectdb(address.c_str());
  PQclear(PQexec(connection,
                 "SELECT pg_terminate_backend(pid, 5000) FROM pg_stat_activity "
                 "WHERE datname = current_database() AND pid <> pg_backend_pid()"));
  PQfinish(connection);
}

class ServerTransaction : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!LedgerPlace::OnServer()) GTEST_SKIP() << "TSV_SERVIDOR names no server";
    ledger.emplace();
    user.emplace(ledger->Open());
    user->Execute("CREATE TABLE Marcas (Id LONG)");
    user->Execute("CREATE TABLE Numeros (Id LONG)");
    user->Workspace().BeginTrans();
    for (int i = 0; i < 300; ++i) Insert("Numeros", i % 299);
    user->Workspace().CommitTrans();
  }

  void Insert(const std::string& table, int id) {
    user->Execute("INSERT INTO " + table + " (Id) VALUES (" + std::to_string(id) + ")");
  }
  void Begin() {
    user->Workspace().BeginTrans();
    Insert("Marcas", 1);
  }
  std::shared_ptr<db::Recordset> Stream(const std::string& sql) { return user->Open(sql, db::dbOpenForwardOnly); }
  int Marks() {
    User other = ledger->Open();
    return ToLong(other.Value("SELECT Count(*) FROM Marcas"));
  }
  // The transaction cannot be kept, and what was done in it is gone.
  void ExpectUndone(int number) {
    EXPECT_EQ(ErrorOf([&] { user->Workspace().CommitTrans(); }).Numero(), number);
    ErrorOf([&] { user->Workspace().Rollback(); });
    EXPECT_EQ(Marks(), 0);
    Insert("Marcas", 9);
    EXPECT_EQ(Marks(), 1) << "the same session goes on";
  }

  std::optional<TemporaryLedger> ledger;
  std::optional<User> user;
};

TEST_F(ServerTransaction, AStreamIsReadWholeAcrossTheCommitAndMayBeClosedBefore) {
  Begin();
  const auto closed = Stream("SELECT A.Id FROM Numeros AS A, Numeros AS B");
  closed->Close();
  const auto rows = Stream("SELECT A.Id FROM Numeros AS A, Numeros AS B");
  user->Workspace().CommitTrans();
  int count = 0;
  for (; !rows->EndOfFile(); rows->MoveNext()) ++count;
  EXPECT_EQ(count, 300 * 300);
  EXPECT_EQ(Marks(), 1);
}

TEST_F(ServerTransaction, AFailedOneIsNotReportedAsKept) {
  Begin();
  const auto rows = Stream("SELECT 10 \\ (Id - 250) FROM Numeros");
  EXPECT_EQ(ErrorOf([&] {
              while (!rows->EndOfFile()) rows->MoveNext();
            }).Numero(),
            11);
  ExpectUndone(3219);
}

TEST_F(ServerTransaction, NothingGoesOnWithoutWhatALostConnectionTookAlong) {
  const std::function<void()> notices[] = {
      [&] { user->database->Announce({"INSERT INTO Marcas (Id) SELECT 2 FROM Serial"}, nullptr); },
      [&] { user->database->CreateQueryDef("SELECT Id, Id FROM Marcas WHERE Id = [p]"); }, [&] { Insert("Marcas", 2); },
      [&] {
        user->Workspace().BeginTrans();
        user->Workspace().Rollback();
      }};
  for (const auto& notice : notices) {
    Begin();
    CutOff(ledger->Path());
    ErrorOf(notice);
    EXPECT_NE(ErrorOf([&] { Insert("Marcas", 3); }).Numero(), 0);
    ExpectUndone(3146);
    user->Execute("DELETE * FROM Marcas");
  }
}

}  // namespace
}  // namespace tsv::test
#endif
