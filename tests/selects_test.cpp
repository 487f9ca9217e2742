// What clients' SELECTs return, held against results that were confirmed on the legacy engine's dialect.
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "support/EmptyLedger.h"
#include "types/Conversions.h"
#include "types/Erro.h"
#include "types/Text.h"

namespace tsv::test {
namespace {

using Json = nlohmann::json;

Json ToJson(const Variant& value, const std::string& type) {
  if (IsNull(value)) return nullptr;
  if (type == "number") return ToDouble(value);
  if (type == "boolean") return ToBoolean(value);
  if (type == "date") {
    std::string iso = std::get<Date>(value).ToIso();
    iso[10] = 'T';
    return iso;
  }
  return std::get<std::string>(value);
}

Json RowsOf(db::Recordset& recordset, const Json& pair) {
  Json rows = Json::array();
  for (; !recordset.EndOfFile(); recordset.MoveNext()) {
    Json row = Json::array();
    for (std::size_t i = 0; i < recordset.FieldCount(); ++i)
      row.push_back(ToJson(recordset.Fields(i).Value(), pair["types"][i]));
    rows.push_back(row);
  }
  return rows;
}

std::shared_ptr<db::Recordset> Open(db::Database& database, const Json& pair) {
  const std::string sql = pair["sql"];
  if (!pair.contains("parameters")) return database.OpenRecordset(sql, db::dbOpenSnapshot);
  const auto query = database.CreateQueryDef(sql);
  for (const auto& [name, value] : pair["parameters"].items()) {
    query->Parameters(name).Value =
        value.is_string() ? Variant(value.get<std::string>()) : Variant(value.get<std::int32_t>());
  }
  return query->OpenRecordset();
}

class Selects : public ::testing::Test {
 protected:
  Selects() {
    std::ifstream file(TSV_TEST_DATA "/selects.json");
    data = Json::parse(file);
    for (const std::string sql : data["setup"]) database->Execute(sql);
  }

  Json data;
  EmptyLedger ledger;
  std::shared_ptr<db::Database> database = ledger.Open();
};

TEST_F(Selects, GiveTheListedResults) {
  ASSERT_EQ(data["pairs"].size(), 112U);
  for (const Json& pair : data["pairs"]) {
    SCOPED_TRACE(pair["name"].get<std::string>() + ": " + pair["sql"].get<std::string>());
    try {
      const auto recordset = Open(*database, pair);
      ASSERT_EQ(recordset->FieldCount(), pair["columns"].size());
      for (std::size_t i = 0; i < recordset->FieldCount(); ++i) {
        EXPECT_EQ(text::CompareFolded(recordset->Fields(i).Name(), pair["columns"][i].get<std::string>()), 0);
      }
      Json actual = RowsOf(*recordset, pair);
      Json expected = pair["expected"];
      if (!pair["ordered"].get<bool>()) {
        std::sort(actual.begin(), actual.end());
        std::sort(expected.begin(), expected.end());
      }
      EXPECT_EQ(actual, expected);
    } catch (const Erro& erro) {
      ADD_FAILURE() << erro.Numero() << " " << erro.Descricao();
    }
  }
}

// Cases that once went wrong, over the same tables: one value each.
TEST_F(Selects, KeepNullsDuplicatesAndLettersApart) {
  database->Execute("INSERT INTO Usuarios (Id, IdLogin, Senha) VALUES (1, 'ABC', 'abc')");
  const auto value = [&](const std::string& sql) {
    return database->OpenRecordset(sql, db::dbOpenSnapshot)->Fields(0).Value();
  };
  const auto count = [&](const std::string& rest) { return ToLong(value("SELECT Count(*) FROM " + rest)); };

  EXPECT_EQ(count("Itens WHERE Id BETWEEN 3 AND 1"), 3);
  EXPECT_EQ(count("Itens WHERE NOT (Preco = ANY (SELECT NULL FROM Movs))"), 0);
  EXPECT_EQ(count("Itens WHERE NOT (Preco > ALL (SELECT Teto FROM Grupos))"), 9);
  EXPECT_EQ(count("Itens WHERE Preco > ALL (SELECT Valor FROM Vazia)"), 10);
  EXPECT_EQ(count("(SELECT DISTINCT TOP 3 Grupo FROM Itens ORDER BY Grupo DESC) AS q"), 3);
  EXPECT_EQ(value("SELECT Count(*) + Null FROM Movs"), Variant(Null()));
  EXPECT_EQ(value("SELECT Ativo FROM Itens UNION SELECT Ativo FROM Itens ORDER BY Ativo"), Variant(true));
  EXPECT_EQ(ToLong(value("SELECT Asc('A') FROM Serial")), 65);

  EXPECT_EQ(count("Usuarios WHERE IdLogin = 'abc'"), 1);
  for (const char* exact : {"IdLogin = Senha", "Senha = IdLogin", "'ABC' IN (Senha)", "'ABC' BETWEEN Senha AND Senha",
                            "IIF(True, Senha, '') = 'ABC'", "IdLogin IN (SELECT Senha FROM Usuarios)"}) {
    EXPECT_EQ(count(std::string("Usuarios WHERE ") + exact), 0) << exact;
  }
  database->Execute("INSERT INTO Grupos (Sigla, Titulo) SELECT TOP 1 'X', Id FROM Itens ORDER BY 2 DESC");
  EXPECT_EQ(value("SELECT Titulo FROM Grupos WHERE Sigla = 'X'"), Variant(std::string("10")));
}

}  // namespace
}  // namespace tsv::test
