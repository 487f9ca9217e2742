#include "SampleLedger.h"
#ifdef TSV_LIBPQ
#include <libpq-fe.h>

#include <stdexcept>

#include "types/Currency.h"

namespace tsv::bench {
namespace {

std::string Amount(std::int64_t units) { return Currency::FromTenThousandths(units).ToText(); }

class ServerWriter final : public EntryWriter {
 public:
  explicit ServerWriter(const std::string& address) : connection_(PQconnectdb(address.c_str())) {
    Do("BEGIN", PGRES_COMMAND_OK);
    Do("COPY tesovia.\"Lancamentos\" (\"Id\", \"CodConta\", \"CodRecDesp\", \"CodCentroCusto\", \"IdParceiroComl\", "
       "\"Valor\", \"Data\", \"DataReferencia\", \"DataVencimento\", \"Historico\", \"DataId\", \"SaldoConta\", "
       "\"SaldoRecDesp\", \"SaldoCentroCusto\", \"SaldoParceiroComl\", \"SaldoGlobal\", \"IdUsuario\") FROM STDIN",
       PGRES_COPY_IN);
  }
  ~ServerWriter() override { PQfinish(connection_); }

  void Write(const StoredEntry& e) override {
    std::string line = std::to_string(e.id);
    for (const std::string& field :
         {e.account, e.type, e.centre.empty() ? "\\N" : e.centre, e.partner == 0 ? "\\N" : std::to_string(e.partner),
          Amount(e.amount), e.moment, e.moment, e.moment, std::string("LANCAMENTO"), e.key, Amount(e.accountBalance),
          Amount(e.typeBalance), Amount(e.centreBalance), Amount(e.partnerBalance), Amount(e.globalBalance)}) {
      line += "\t" + field;
    }
    line += "\t1\n";
    PQputCopyData(connection_, line.data(), static_cast<int>(line.size()));
  }

  void Finish(std::int32_t serial) override {
    PQputCopyEnd(connection_, nullptr);
    Check(PQgetResult(connection_), PGRES_COMMAND_OK);
    while (PGresult* rest = PQgetResult(connection_)) PQclear(rest);
    Do("UPDATE tesovia.\"Serial\" SET \"Serial\" = " + std::to_string(serial), PGRES_COMMAND_OK);
    Do("COMMIT", PGRES_COMMAND_OK);
    Do("VACUUM (ANALYZE) tesovia.\"Lancamentos\"", PGRES_COMMAND_OK);
    Do("CHECKPOINT", PGRES_COMMAND_OK);
  }

 private:
  void Do(const std::string& sql, ExecStatusType wanted) { Check(PQexec(connection_, sql.c_str()), wanted); }
  void Check(PGresult* result, ExecStatusType wanted) {
    const bool right = PQresultStatus(result) == wanted;
    PQclear(result);
    if (!right) throw std::runtime_error(PQerrorMessage(connection_));
  }

  PGconn* connection_;
};

}  // namespace

std::unique_ptr<EntryWriter> WriterToServer(const std::string& address) {
  return std::make_unique<ServerWriter>(address);
}

}  // namespace tsv::bench
#else
namespace tsv::bench {

std::unique_ptr<EntryWriter> WriterToServer(const std::string&) { return nullptr; }

}  // namespace tsv::bench
#endif
