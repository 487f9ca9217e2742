#include "ServerFloor.h"

#include <stdexcept>
#include <utility>

#include "common/Balances.h"

namespace tsv::bench {
namespace {

// $1 id, $2 account, $3 type, $4 centre, $5 partner, $6 amount, $7 date, $8 key, $9 to $13 balances
constexpr const char* kMasters =
    " FROM tesovia.\"Contas\" AS c CROSS JOIN tesovia.\"TiposMovimentacoes\" AS t "
    "LEFT JOIN tesovia.\"CentrosDeCusto\" AS u ON tesovia.tsv_texto(u.\"Codigo\") = tesovia.tsv_texto($4) AND NOT "
    "u.\"Inativo\" AND NOT u.\"Excluido\" "
    "LEFT JOIN tesovia.\"ParceirosComerciais\" AS p ON p.\"Id\" = $5 AND NOT p.\"Inativo\" "
    "WHERE tesovia.tsv_texto(c.\"Codigo\") = tesovia.tsv_texto($2) AND NOT c.\"Inativa\" AND NOT c.\"Excluida\" "
    "AND tesovia.tsv_texto(t.\"Codigo\") = tesovia.tsv_texto($3) AND NOT t.\"Inativo\" AND NOT t.\"Excluido\" "
    "AND ($4 IS NULL OR u.\"Codigo\" IS NOT NULL) AND ($5 IS NULL OR p.\"Id\" IS NOT NULL)";

constexpr const char* kInsert =
    "INSERT INTO tesovia.\"Lancamentos\" (\"Id\", \"CodConta\", \"CodRecDesp\", \"CodCentroCusto\", "
    "\"IdParceiroComl\", \"Valor\", \"Data\", \"DataReferencia\", \"DataVencimento\", \"Historico\", \"DataId\", "
    "\"SaldoConta\", \"SaldoRecDesp\", \"SaldoCentroCusto\", \"SaldoParceiroComl\", \"SaldoGlobal\", \"IdUsuario\", "
    "\"Realizado\", \"IdConcorrencia\") "
    "SELECT $1, $2, $3, $4, $5, $6, $7, $7, $7, 'LANCAMENTO', $8, $9, $10, $11, $12, $13, 1, '?', 0";

constexpr const char* kJournal =
    "INSERT INTO tesovia.\"HistoricosDeLancamentos\" (\"DataHora\", \"IdAcao\", \"Id\", \"CodConta\", \"DesConta\", "
    "\"CodRecDesp\", \"DesMovimentacao\", \"CodCentroCusto\", \"DesCentroDeCusto\", \"IdParceiroComl\", "
    "\"NomeParceiro\", \"Filial\", \"Valor\", \"Data\", \"DataReferencia\", \"DataVencimento\", \"Historico\", "
    "\"DataId\", \"SaldoGlobal\", \"SaldoConta\", \"SaldoRecDesp\", \"IdUsuario\", \"DesUsuario\", \"Realizado\") "
    "SELECT $7, 1, $1, $2, c.\"DesConta\", $3, t.\"DesMovimentacao\", $4, u.\"DesCentroDeCusto\", $5, p.\"Nome\", "
    "p.\"Filial\", $6, $7, $7, $7, 'LANCAMENTO', $8, $11, $9, $10, 1, 'BANCO DE PROVA', '?'";

// $1 account, $2 type, $3 centre, $4 partner, $5 amount, $6 key
constexpr const char* kShift =
    "UPDATE tesovia.\"Lancamentos\" SET "
    "\"SaldoConta\" = \"SaldoConta\" + tesovia.tsv_comeca($1, \"CodConta\")::integer * $5, "
    "\"SaldoRecDesp\" = \"SaldoRecDesp\" + tesovia.tsv_comeca($2, \"CodRecDesp\")::integer * $5, "
    "\"SaldoCentroCusto\" = \"SaldoCentroCusto\" + coalesce(\"CodCentroCusto\" IS NOT NULL AND "
    "tesovia.tsv_comeca($3, \"CodCentroCusto\"), FALSE)::integer * $5, "
    "\"SaldoParceiroComl\" = \"SaldoParceiroComl\" + coalesce(\"IdParceiroComl\" = $4, FALSE)::integer * $5, "
    "\"SaldoGlobal\" = \"SaldoGlobal\" + $5 WHERE \"DataId\" > $6";

constexpr const char* kTypes = "(integer, text, text, text, integer, numeric, timestamp, text, numeric, numeric, ";

const char* OrNull(const std::string& text) { return text.empty() ? nullptr : text.c_str(); }

// The statement with the function's variables in place of its parameters.
std::string With(std::string sql, const std::vector<std::string>& variables) {
  for (std::size_t i = variables.size(); i > 0; --i) {
    const std::string mark = "$" + std::to_string(i);
    for (std::size_t at = sql.find(mark); at != std::string::npos; at = sql.find(mark, at + 1))
      sql.replace(at, mark.size(), variables[i - 1]);
  }
  return sql + ";\n";
}

std::string Function() {
  const std::vector<std::string> entry = {"v_id",      "v_conta",     "v_tipo",   "v_centro", "v_parceiro",
                                          "v_valor",   "v_dia",       "v_chave",  "v_sconta", "v_stipo",
                                          "v_scentro", "v_sparceiro", "v_sglobal"};
  std::vector<std::string> journal = entry;
  journal[10] = "v_sglobal";
  return "CREATE FUNCTION tesovia.bench_post(v_conta text, v_tipo text, v_centro text, v_parceiro integer, v_valor "
         "numeric, v_dia timestamp) RETURNS integer LANGUAGE plpgsql SET plan_cache_mode = force_generic_plan "
         "SET enable_seqscan = off SET enable_bitmapscan = off AS $$\n"
         "DECLARE s record; v record; v_id integer; v_chave text; v_sconta numeric; v_stipo numeric; v_scentro "
         "numeric; "
         "v_sparceiro numeric; v_sglobal numeric;\nBEGIN\n"
         "PERFORM tesovia.tsv_tomar_a_vez(10000);\n"
         "SELECT * INTO s FROM tesovia.\"ParQrySerialESaldos\"(v_parceiro, coalesce(v_centro, '@@@'), v_conta, v_tipo, "
         "v_dia);\n"
         "v_id := s.\"SERIAL\" + 1; v_chave := to_char(v_dia, 'YYYYMMDD') || lpad(v_id::text, 9, '0');\n"
         "v_sconta := s.\"SaldoConta\" + v_valor; v_stipo := s.\"SaldoRecDesp\" + v_valor; v_sglobal := "
         "s.\"SaldoGlobal\" + v_valor; v_scentro := CASE WHEN v_centro IS NULL THEN 0 ELSE s.\"SaldoCCusto\" + v_valor "
         "END; v_sparceiro := CASE WHEN v_parceiro IS NULL THEN 0 ELSE s.\"SaldoParceiro\" + v_valor END;\n"
         "UPDATE tesovia.\"Serial\" SET \"Serial\" = v_id WHERE \"Serial\" = v_id - 1;\n" +
         With(std::string(kInsert) + kMasters, entry) + With(std::string(kJournal) + kMasters, journal) +
         With(kShift, {"v_conta", "v_tipo", "v_centro", "v_parceiro", "v_valor", "v_chave"}) +
         "SELECT * INTO v FROM tesovia.\"ParQryLastSaldosByDataId\"(v_parceiro, coalesce(v_centro, '$@#'), v_conta, "
         "v_tipo, v_chave, ' ');\n"
         "IF v.\"SaldoGlobal\" <> v_sglobal THEN RAISE EXCEPTION 'balances differ'; END IF;\n"
         "RETURN v_id;\nEND $$";
}

}  // namespace

ServerFloor::ServerFloor(const std::string& address) : connection_(PQconnectdb(address.c_str())) {
  Do("SET client_min_messages = error");
  Do(Function());
  const std::string master = kMasters;
  Do("SET enable_seqscan = off");
  Do("SET enable_bitmapscan = off");
  Do("SET plan_cache_mode = force_generic_plan");
  Do("SET jit = off");
  Do("PREPARE tipo(text) AS SELECT \"Tipo\" FROM tesovia.\"TiposMovimentacoes\" WHERE tesovia.tsv_texto(\"Codigo\") = "
     "tesovia.tsv_texto($1)");
  Do("PREPARE antes(integer, text, text, text, timestamp) AS SELECT * FROM "
     "tesovia.\"ParQrySerialESaldos\"($1, $2, $3, $4, $5)");
  Do("PREPARE vez AS SELECT tesovia.tsv_tomar_a_vez(10000)");
  Do("PREPARE serial(integer) AS UPDATE tesovia.\"Serial\" SET \"Serial\" = \"Serial\" + 1 WHERE \"Serial\" = $1");
  Do(std::string("PREPARE inclui") + kTypes + "numeric, numeric, numeric) AS " + kInsert + master);
  Do(std::string("PREPARE diario") + kTypes + "numeric) AS " + kJournal + master);
  Do(std::string("PREPARE desloca(text, text, text, integer, numeric, text) AS ") + kShift);
  Do("PREPARE depois(integer, text, text, text, text, text) AS SELECT * FROM "
     "tesovia.\"ParQryLastSaldosByDataId\"($1, $2, $3, $4, $5, $6)");
  Do("PREPARE tudo(text, text, text, integer, numeric, timestamp) AS SELECT tesovia.bench_post($1, $2, $3, $4, $5, "
     "$6)");
  for (const auto& [name, sql] : {std::pair("comeca", "BEGIN"), std::pair("fim", "COMMIT")})
    PQclear(PQprepare(connection_.get(), name, sql, 0, nullptr));
  PQenterPipelineMode(connection_.get());
}

void ServerFloor::Send(const char* name, const std::vector<const char*>& values) {
  PQsendQueryPrepared(connection_.get(), name, static_cast<int>(values.size()), values.data(), nullptr, nullptr, 0);
}

ServerFloor::Results ServerFloor::Sync(int statements) {
  PQpipelineSync(connection_.get());
  Results results;
  for (int i = 0; i < statements; ++i) {
    results.emplace_back(PQgetResult(connection_.get()), PQclear);
    const ExecStatusType status = PQresultStatus(results.back().get());
    if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK)
      throw std::runtime_error(PQresultErrorMessage(results.back().get()));
    PQgetResult(connection_.get());  // the end of the statement
  }
  PQclear(PQgetResult(connection_.get()));
  return results;
}

void ServerFloor::Post(const Posting& posting) {
  const auto number = [](const Results& results, std::size_t statement, int column) {
    return *Currency::FromText(PQgetvalue(results[statement].get(), 0, column));
  };
  const std::string partner = posting.partner == 0 ? "" : std::to_string(posting.partner);
  const std::string centre = posting.centre.empty() ? "@@@" : posting.centre;
  const std::string unverified = posting.centre.empty() ? "$@#" : posting.centre;
  const std::string moment = posting.date.ToIso();
  const std::string amount = posting.amount.ToText();
  const char* account = posting.account.c_str();
  const char* type = posting.type.c_str();
  Send("tipo", {type});
  Send("antes", {posting.partner == 0 ? "0" : partner.c_str(), centre.c_str(), account, type, moment.c_str()});
  const Results before = Sync(2);
  const std::string serial = PQgetvalue(before[1].get(), 0, 0);
  const std::string id = std::to_string(std::stoi(serial) + 1);
  const std::string key = Module1::MontarDataId(posting.date, std::stoi(id));
  const auto added = [&](int column, bool counts) {
    return counts ? (number(before, 1, column) + posting.amount).ToText() : std::string("0");
  };
  const std::string byPartner = added(1, posting.partner != 0);
  const std::string byCentre = added(2, !posting.centre.empty());
  const std::string byAccount = added(3, true);
  const std::string byType = added(4, true);
  const std::string all = added(5, true);
  Send("comeca", {});
  Send("vez", {});
  Send("serial", {serial.c_str()});
  Send("inclui", {id.c_str(), account, type, OrNull(posting.centre), OrNull(partner), amount.c_str(), moment.c_str(),
                  key.c_str(), byAccount.c_str(), byType.c_str(), byCentre.c_str(), byPartner.c_str(), all.c_str()});
  Send("diario", {id.c_str(), account, type, OrNull(posting.centre), OrNull(partner), amount.c_str(), moment.c_str(),
                  key.c_str(), byAccount.c_str(), byType.c_str(), all.c_str()});
  Send("desloca", {account, type, OrNull(posting.centre), OrNull(partner), amount.c_str(), key.c_str()});
  Send("depois", {posting.partner == 0 ? "0" : partner.c_str(), unverified.c_str(), account, type, key.c_str(), " "});
  const Results done = Sync(7);
  if (number(done, 6, 0).ToText() != byAccount || number(done, 6, 4).ToText() != all)
    throw std::runtime_error("balances differ");
  Send("fim", {});
  Sync(1);
}

void ServerFloor::PostOnServer(const Posting& posting) {
  const std::string partner = posting.partner == 0 ? "" : std::to_string(posting.partner);
  const std::string moment = posting.date.ToIso();
  const std::string amount = posting.amount.ToText();
  Send("tudo", {posting.account.c_str(), posting.type.c_str(), OrNull(posting.centre), OrNull(partner), amount.c_str(),
                moment.c_str()});
  Sync(1);
}

void ServerFloor::Do(const std::string& sql) {
  const std::unique_ptr<PGresult, decltype(&PQclear)> result(PQexec(connection_.get(), sql.c_str()), PQclear);
  if (PQresultStatus(result.get()) != PGRES_COMMAND_OK && PQresultStatus(result.get()) != PGRES_TUPLES_OK)
    throw std::runtime_error(PQerrorMessage(connection_.get()));
}

}  // namespace tsv::bench
