#include "db/dao/JetFileDriver.h"

#include "db/EngineError.h"

namespace tsv::db::dao {

bool JetFileDriver::Recognises(std::string_view /*path*/, std::string_view firstBytes) const {
  constexpr std::string_view kPage("\0\1\0\0", 4);
  if (!firstBytes.starts_with(kPage)) return false;
  const std::string_view name = firstBytes.substr(kPage.size());
  return name.starts_with("Standard Jet DB") || name.starts_with("Standard ACE DB");
}

std::shared_ptr<Database> JetFileDriver::Open(std::string_view path, bool /*exclusive*/, bool /*readOnly*/,
                                              std::string_view /*connect*/) const {
  throw Erro(static_cast<std::int32_t>(EngineError::UnrecognisedFile),
             TextOf(EngineError::UnrecognisedFile, path) +
                 " É um arquivo do mecanismo Jet, que esta instalação não tem. Importe-o para um livro-caixa novo.");
}

}  // namespace tsv::db::dao
