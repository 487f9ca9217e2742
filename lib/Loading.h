#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "CLancamento.h"
#include "common/Balances.h"
#include "common/Errors.h"
#include "db/Recordset.h"

// How the ledger's own operations read it; clients have no part in it.
namespace tsv::internal {

// On its first row, its count complete. No open ledger: TS_ERRO_NAO_INICIALIZADO.
std::shared_ptr<db::Recordset> AbrirRecordset(std::string_view SQL, db::RecordsetTypeEnum Tipo);

// The entry of the current row, as CLancamento loads it.
std::shared_ptr<CLancamento> Carregado(const db::Recordset& row);

// The entry as its row stands now. No such entry: TS_ERRO_CARREGAR_LANCAMENTO.
std::shared_ptr<CLancamento> CarregarLancamentoTS(std::int32_t IdLancamento);

// The entry if it still is the version that the client saw; otherwise raises the error with the message for the user.
std::shared_ptr<CLancamento> CarregarVersao(std::int32_t IdLancamento, std::int32_t IdConcorrencia, TS_ERROS numero,
                                            std::string_view refusal);

// What decides which balances the entry is in.
Module1::Classificacao ClasseDe(const CLancamento& lancamento);

}  // namespace tsv::internal
