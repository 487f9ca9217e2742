#pragma once

#include <memory>
#include <string>

#include "CLancamento.h"
#include "Context.h"
#include "Tesovia.h"
#include "types/Erro.h"

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

// The same, but an entry that only came second to another user's is posted again, for some seconds.
std::shared_ptr<CLancamento> PostPatiently(Tesovia& tesovia, ConsoleHost& host, const TypedEntry& entry);

// What to tell the user about an error of a posting: its text, the box that the ledger showed, or what its silence
// means.
std::string ReasonOf(const Erro& erro, const ConsoleHost& host);

bool IsRefusal(const Erro& erro);  // one of the library's own numbers

}  // namespace tsv::cli
