#include "EntryColumns.h"

namespace tsv::internal {

void AppendColumns(Module1::Statement& statement, const EntryColumns& columns) {
  statement << columns.Documento << " As Documento," << columns.Valor << " As Valor," << columns.Data << " As Data,"
            << columns.DataReferencia << " As DataReferencia," << columns.DataVencimento << " As DataVencimento,"
            << columns.Historico << " As Historico," << columns.DataId << " As DataId," << columns.SaldoGlobal
            << " As SaldoGlobal," << columns.SaldoConta << " As SaldoConta, " << columns.SaldoRecDesp
            << " As SaldoRecDesp, ";
}

}  // namespace tsv::internal
