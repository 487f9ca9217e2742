#pragma once

#include "common/Statement.h"

// A new entry as its statements write it.
namespace tsv::internal {

// The columns that the ledger and its journal name alike.
struct EntryColumns {
  Module1::Literal Documento, Valor, Data, DataReferencia, DataVencimento, Historico, DataId;
  Module1::Literal SaldoGlobal, SaldoConta, SaldoRecDesp;
};

void AppendColumns(Module1::Statement& statement, const EntryColumns& columns);

}  // namespace tsv::internal
