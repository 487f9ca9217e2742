#include "NewLedger.h"

#include <filesystem>
#include <iostream>

#include "Failure.h"
#include "Secrets.h"
#include "common/Engines.h"
#include "common/Recordsets.h"
#include "common/Session.h"
#include "db/FilePath.h"

namespace tsv::cli {

NewLedger::NewLedger(std::string path) : path_(std::move(path)) {
  CriarBancoDeDados(path_);
  try {
    database_ = CurrentSession().Engine.OpenDatabase(path_, false, false, kConnect);
  } catch (...) {
    Remove();
    throw;
  }
}

NewLedger::~NewLedger() {
  Module1::FecharBanco(database_);
  if (!kept_) Remove();
}

void NewLedger::Remove() noexcept {
  try {
    RemoverBancoDeDados(path_);
  } catch (const std::exception& error) {
    std::cerr << Told("O livro incompleto em '" + path_ + "' não pôde ser removido: " + error.what() + '\n');
  }
}

void ExpectNoFile(const std::string& path) {
  if (EstaEmServidor(path)) return;
  std::error_code ignored;
  if (std::filesystem::exists(db::FilePath(path), ignored)) throw Failure(kFailed, "'" + path + "' já existe.");
}

}  // namespace tsv::cli
