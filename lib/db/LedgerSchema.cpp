#include "db/LedgerSchema.h"

#include <cstdio>
#include <string>
#include <utility>

namespace tsv::db {
namespace {

constexpr int kCodeSize = 31;

Column Text(std::string name, int size) { return {.name = std::move(name), .type = ValueType::Text, .size = size}; }
Column Long(std::string name) { return {.name = std::move(name), .type = ValueType::Long}; }
Column Byte(std::string name) { return {.name = std::move(name), .type = ValueType::Byte}; }
Column Money(std::string name) { return {.name = std::move(name), .type = ValueType::Currency}; }
Column Moment(std::string name) { return {.name = std::move(name), .type = ValueType::Date}; }

Column Flag(std::string name) {
  return {.name = std::move(name), .type = ValueType::Boolean, .required = true, .defaultValue = false};
}

Column Required(Column column) {
  column.required = true;
  return column;
}

Column Exact(Column column) {
  column.exact = true;
  return column;
}

Column OrEmpty(Column column) {
  column.allowZeroLength = true;
  return column;
}

Column Default(Column column, Variant value) {
  column.defaultValue = std::move(value);
  return column;
}

// A table of things that entries name by their code.
Table Coded(std::string name, std::vector<Column> rest) {
  Table table{.name = std::move(name),
              .columns = {Required(Long("Id")), Required(Text("Codigo", kCodeSize))},
              .primaryKey = {"Id"},
              .indexes = {{.columns = {"Codigo"}, .unique = true}},
              .foreignKeys = {}};
  table.columns.insert(table.columns.end(), rest.begin(), rest.end());
  return table;
}

Table Partners() {
  return {.name = "ParceirosComerciais",
          .columns = {Required(Long("Id")), Text("Nome", 60), Text("Filial", 30), Flag("Inativo")},
          .primaryKey = {"Id"},
          .indexes = {},
          .foreignKeys = {}};
}

// Two users may share a login name: the first one found is logged in.
Table Users() {
  return {.name = "Usuarios",
          .columns = {Required(Long("Id")), Required(Text("IdLogin", 30)), OrEmpty(Exact(Text("Senha", 30))),
                      Flag("Inativo"), Text("DesUsuario", 50)},
          .primaryKey = {"Id"},
          .indexes = {},
          .foreignKeys = {}};
}

Table SerialCounter() {
  return {.name = "Serial", .columns = {Required(Long("Serial"))}, .primaryKey = {}, .indexes = {}, .foreignKeys = {}};
}

// No balance stands in an index: a posting changes the balances of all later rows.
Table Entries() {
  return {.name = "Lancamentos",
          .columns = {Required(Long("Id")),
                      Required(Text("CodConta", kCodeSize)),
                      Required(Text("CodRecDesp", kCodeSize)),
                      Text("CodCentroCusto", kCodeSize),
                      Long("IdParceiroComl"),
                      OrEmpty(Text("Documento", 15)),
                      Required(Money("Valor")),
                      Money("ValorPago"),
                      Moment("Data"),
                      Moment("DataReferencia"),
                      Moment("DataVencimento"),
                      Required(Text("Historico", 50)),
                      Required(Exact(Text("DataId", 17))),
                      Required(Money("SaldoConta")),
                      Required(Money("SaldoRecDesp")),
                      Default(Money("SaldoCentroCusto"), Currency()),
                      Default(Money("SaldoParceiroComl"), Currency()),
                      Required(Money("SaldoGlobal")),
                      Required(Long("IdUsuario")),
                      OrEmpty(Default(Text("Realizado", 1), std::string("?"))),
                      Flag("Estorno"),
                      Flag("Estornado"),
                      Default(Byte("Transferencia"), std::uint8_t{0}),
                      Default(Long("IdConcorrencia"), std::int32_t{0})},
          .primaryKey = {"DataId"},
          .indexes = {{.columns = {"Id"}, .unique = true},
                      {.columns = {"CodConta", "DataId"}},
                      {.columns = {"CodRecDesp", "DataId"}},
                      {.columns = {"CodCentroCusto", "DataId"}},
                      {.columns = {"IdParceiroComl", "DataId"}}},
          .foreignKeys = {{"CodConta", "Contas", "Codigo"},
                          {"CodRecDesp", "TiposMovimentacoes", "Codigo"},
                          {"CodCentroCusto", "CentrosDeCusto", "Codigo"},
                          {"IdParceiroComl", "ParceirosComerciais", "Id"}}};
}

// A copy of what the entry and its descriptions were, so it takes whatever they may hold and depends on none of them.
Table Journal() {
  return {.name = "HistoricosDeLancamentos",
          .columns = {Required(Long("IdUsuario")),
                      OrEmpty(Text("DesUsuario", 50)),
                      Required(Moment("DataHora")),
                      Required(Byte("IdAcao")),
                      Required(Long("Id")),
                      OrEmpty(Text("CodConta", kCodeSize)),
                      OrEmpty(Text("DesConta", 50)),
                      OrEmpty(Text("CodRecDesp", kCodeSize)),
                      OrEmpty(Text("DesMovimentacao", 50)),
                      OrEmpty(Text("CodCentroCusto", kCodeSize)),
                      OrEmpty(Text("DesCentroDeCusto", 50)),
                      Long("IdParceiroComl"),
                      OrEmpty(Text("NomeParceiro", 60)),
                      OrEmpty(Text("Filial", 30)),
                      OrEmpty(Text("Documento", 15)),
                      Money("Valor"),
                      Money("ValorPago"),
                      Moment("Data"),
                      Moment("DataReferencia"),
                      Moment("DataVencimento"),
                      OrEmpty(Text("Historico", 50)),
                      Flag("Estorno"),
                      OrEmpty(Exact(Text("DataId", 17))),
                      Money("SaldoConta"),
                      Money("SaldoRecDesp"),
                      Money("SaldoCentroCusto"),
                      Money("SaldoParceiroComl"),
                      Money("SaldoGlobal"),
                      Flag("Estornado"),
                      OrEmpty(Default(Text("Realizado", 1), std::string("?"))),
                      Default(Byte("Transferencia"), std::uint8_t{0})},
          .primaryKey = {},
          .indexes = {{.columns = {"Id"}}},
          .foreignKeys = {}};
}

// Which two entries are the legs of one transfer. The row outlives its legs.
Table Transfers() {
  return {.name = "Transferencias",
          .columns = {Required(Long("SerialSai")), Required(Long("SerialEntra"))},
          .primaryKey = {"SerialSai"},
          .indexes = {{.columns = {"SerialEntra"}, .unique = true}},
          .foreignKeys = {}};
}

// What was imported already, line by line, so that importing again posts nothing twice.
Table ImportedLines() {
  return {.name = "LinhasImportadas",
          .columns = {Required(Exact(Text("Identidade", 200))), Required(Long("Linha")),
                      Required(Exact(Text("Conteudo", 32))), Required(Long("IdLancamento"))},
          .primaryKey = {"Identidade", "Linha"},
          .indexes = {},
          .foreignKeys = {}};
}

}  // namespace

std::vector<Table> LedgerTables() {
  return {Coded("Contas", {Text("DesConta", 50), Flag("Inativa"), Flag("Excluida")}),
          Coded("TiposMovimentacoes", {Byte("Tipo"), Text("DesMovimentacao", 50), Flag("Inativo"), Flag("Excluido")}),
          Coded("CentrosDeCusto", {Text("DesCentroDeCusto", 50), Flag("Inativo"), Flag("Excluido")}),
          Partners(),
          Users(),
          SerialCounter(),
          Transfers(),
          Entries(),
          Journal(),
          ImportedLines()};
}

std::string EntryKey(Date date, std::int64_t id) {
  const CivilTime day = date.ToCivil();
  char key[64];
  std::snprintf(key, sizeof key, "%04d%02d%02d%09lld", day.year, day.month, day.day, static_cast<long long>(id));
  return key;
}

}  // namespace tsv::db
