#pragma once

#include <memory>
#include <string>

#include "CLancamento.h"
#include "Context.h"
#include "Tesovia.h"

namespace tsv::cli {

// One entry as it was typed, on the command line or in a file.
struct TypedEntry {
  std::string data;
  std::string referencia;  // empty: as data
  std::string valor;
  std::string historico;
  std::string conta;
  std::string recDesp;
  std::string centro;    // empty: none
  std::string parceiro;  // empty: none
  std::string documento;
};

// Reads the values and posts them. A value that cannot be read is a Failure, a refusal by the ledger an Erro. Where the
// ledger only says that something was deactivated, the host hears what it is.
std::shared_ptr<CLancamento> Post(Tesovia& tesovia, ConsoleHost& host, const TypedEntry& entry);

}  // namespace tsv::cli
