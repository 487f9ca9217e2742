#include "db/dao/JetFileDriver.h"

#include <fstream>
#include <string>

#include "db/EngineError.h"
#include "db/FilePath.h"
#ifdef _WIN32
#include "db/dao/windows/DaoDatabase.h"
#endif

namespace tsv::db::dao {

bool JetFileDriver::Recognises(std::string_view path) const {
  constexpr std::string_view kPage("\0\1\0\0", 4);
  std::string start(kPage.size() + 15, '\0');
  std::ifstream file(FilePath(path), std::ios::binary);
  if (!file.read(start.data(), static_cast<std::streamsize>(start.size())) || !start.starts_with(kPage)) return false;
  const std::string_view name = std::string_view(start).substr(kPage.size());
  return name.starts_with("Standard Jet DB") || name.starts_with("Standard ACE DB");
}

std::shared_ptr<Database> JetFileDriver::Open(std::string_view path, [[maybe_unused]] bool exclusive,
                                              [[maybe_unused]] bool readOnly,
                                              [[maybe_unused]] std::string_view connect) const {
#ifdef _WIN32
  if (auto database = OpenWithLegacyEngine(path, exclusive, readOnly, connect)) return database;
#endif
  throw Erro(static_cast<std::int32_t>(EngineError::UnrecognisedFile),
             TextOf(EngineError::UnrecognisedFile, path) +
                 " É um arquivo do mecanismo Jet, que esta máquina não tem. Importe-o para um livro-caixa novo.");
}

}  // namespace tsv::db::dao
