#include "db/StoredQueries.h"

#include <memory>
#include <string>
#include <utility>

#include "types/Text.h"

namespace tsv::db {
namespace {

FieldDescription Amount(std::string name) { return {std::move(name), DataTypeEnum::dbCurrency}; }

FieldDescriptions Described(std::vector<FieldDescription> fields) {
  return std::make_shared<const std::vector<FieldDescription>>(std::move(fields));
}

}  // namespace

const StoredQuery* FindStoredQuery(std::string_view name) {
  static const StoredQuery queries[] = {
      {"ParQrySerialESaldos",
       StoredQuery::Kind::SerialAndBalances,
       {"IdParceiro", "CodCCusto", "CodCon", "CodRecDes", "ParData"},
       Described({{"SERIAL", DataTypeEnum::dbLong},
                  Amount("SaldoParceiro"),
                  Amount("SaldoCCusto"),
                  Amount("SaldoConta"),
                  Amount("SaldoRecDesp"),
                  Amount("SaldoGlobal")})},
      {"ParQryLastSaldosByDataId",
       StoredQuery::Kind::LastBalances,
       {"IdParceiro", "CodCCusto", "CodCon", "CodRecDes", "ParNewDataId", "ParOldDataId"},
       Described({Amount("SaldoConta"), Amount("SaldoRecDesp"), Amount("SaldoCCusto"), Amount("SaldoParceiro"),
                  Amount("SaldoGlobal")})}};
  for (const StoredQuery& query : queries) {
    if (text::CompareFolded(query.name, name) == 0) return &query;
  }
  return nullptr;
}

}  // namespace tsv::db
