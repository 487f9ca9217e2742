#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <string>

#include "common/Errors.h"
#include "db/Recordset.h"

namespace tsv {
namespace {

using Values = std::map<std::string, std::int32_t>;

// The members of an enumeration of the interface description.
Values EnumerationOf(const std::string& name) {
  std::ifstream file(TSV_TYPELIB);
  const std::string idl{std::istreambuf_iterator<char>(file), {}};
  const std::size_t end = idl.find("} " + name + ";");
  const std::size_t begin = end == std::string::npos ? end : idl.rfind("typedef enum", end);
  if (begin == std::string::npos) return {};
  const std::string body = idl.substr(begin, end - begin);
  const std::regex member(R"((\w+)\s*=\s*(\w+))");
  Values values;
  for (std::sregex_iterator at(body.begin(), body.end(), member), none; at != none; ++at) {
    values[(*at)[1]] = static_cast<std::int32_t>(std::stoul((*at)[2], nullptr, 0));
  }
  return values;
}

TEST(InterfaceDescription, PublishesTheErrorNumbersThatAreRaised) {
  const Values expected = {{"TS_ERRO_LOGIN", TS_ERRO_LOGIN},
                           {"TS_ERRO_LANCAMENTO", TS_ERRO_LANCAMENTO},
                           {"TS_ERRO_EXCLUSAO", TS_ERRO_EXCLUSAO},
                           {"TS_ERRO_BAIXA", TS_ERRO_BAIXA},
                           {"TS_ERRO_VALIDACAO_LANCAMENTO", TS_ERRO_VALIDACAO_LANCAMENTO},
                           {"TS_ERRO_VALIDACAO_TRANSFERENCIA", TS_ERRO_VALIDACAO_TRANSFERENCIA},
                           {"TS_ERRO_NAO_INICIALIZADO", TS_ERRO_NAO_INICIALIZADO},
                           {"TS_ERRO_CARREGAR_LANCAMENTO", TS_ERRO_CARREGAR_LANCAMENTO},
                           {"TS_ERRO_TRANSFERENCIA", TS_ERRO_TRANSFERENCIA},
                           {"TS_ERRO_JA_BAIXADO", TS_ERRO_JA_BAIXADO},
                           {"TS_ERRO_ESTORNO", TS_ERRO_ESTORNO}};
  EXPECT_EQ(EnumerationOf("TS_ERROS"), expected);
}

TEST(InterfaceDescription, NumbersRecordsetsAsTheLibraryDoes) {
  const Values expected = {{"dbOpenTable", db::dbOpenTable},
                           {"dbOpenDynaset", db::dbOpenDynaset},
                           {"dbOpenSnapshot", db::dbOpenSnapshot},
                           {"dbOpenForwardOnly", db::dbOpenForwardOnly}};
  EXPECT_EQ(EnumerationOf("RecordsetTypeEnum"), expected);
}

}  // namespace
}  // namespace tsv
