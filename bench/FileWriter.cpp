#include "SampleLedger.h"
#include "db/sqlite/Connection.h"
#include "db/sqlite/SqlFunctions.h"

namespace tsv::bench {
namespace {

using db::sqlite::Connection;

Connection& Prepared(Connection& connection) {
  db::sqlite::RegisterFunctions(connection);
  connection.Execute("PRAGMA synchronous = OFF");
  connection.Execute("BEGIN IMMEDIATE");
  return connection;
}

class FileWriter final : public EntryWriter {
 public:
  explicit FileWriter(const std::string& path)
      : connection_(path, Connection::Access::Write, std::chrono::milliseconds(0)),
        insert_(Prepared(connection_),
                "INSERT INTO Lancamentos (Id, CodConta, CodRecDesp, CodCentroCusto, IdParceiroComl, Valor, Data, "
                "DataReferencia, DataVencimento, Historico, DataId, SaldoConta, SaldoRecDesp, SaldoCentroCusto, "
                "SaldoParceiroComl, SaldoGlobal, IdUsuario) "
                "VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?7, ?7, 'LANCAMENTO', ?8, ?9, ?10, ?11, ?12, ?13, 1)",
                true) {}

  void Write(const StoredEntry& e) override {
    sqlite3_clear_bindings(insert_.Handle());
    insert_.Bind(1, e.id).Bind(2, e.account).Bind(3, e.type).Bind(6, e.amount).Bind(7, e.moment).Bind(8, e.key);
    insert_.Bind(9, e.accountBalance).Bind(10, e.typeBalance).Bind(11, e.centreBalance).Bind(12, e.partnerBalance);
    insert_.Bind(13, e.globalBalance);
    if (!e.centre.empty()) insert_.Bind(4, e.centre);
    if (e.partner != 0) insert_.Bind(5, e.partner);
    insert_.Run();
  }

  void Finish(std::int32_t serial) override {
    connection_.Execute(("UPDATE Serial SET Serial = " + std::to_string(serial)).c_str());
    connection_.Execute("COMMIT");
    connection_.Execute("PRAGMA wal_checkpoint(TRUNCATE)");
  }

 private:
  Connection connection_;
  db::sqlite::Statement insert_;
};

}  // namespace

std::unique_ptr<EntryWriter> WriterToFile(const std::string& path) { return std::make_unique<FileWriter>(path); }

}  // namespace tsv::bench
