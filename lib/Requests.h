#pragma once

#include <functional>
#include <memory>

#include "CBaixa.h"
#include "CTransferencia.h"
#include "Collection.h"

// What the ledger's own operations do with a client's requests; clients have no part in it.
namespace tsv::internal {

// Holds the request against its entry. Returns true; the first thing wrong raises TS_ERRO_BAIXA with the message for
// the user, an amount of zero on either side 11.
bool Validar(const CBaixa& baixa);

// True when the request names everything that a transfer needs, dated from 1932 to 2028; otherwise raises
// TS_ERRO_TRANSFERENCIA for the first thing missing. For programs that check early: a transfer itself relies on the
// properties' rules and on what the database refuses.
bool Validar(const CTransferencia& transferencia);

// The operations on a request that somebody else holds: it is read as a part of the operation, once a ledger is known
// to be open, and what its reading raises is the operation's error.
std::shared_ptr<CLancamento> BaixarLancamentoTS(const std::function<CBaixa&()>& baixa);
Collection FazerTransferenciaTS(const std::function<const CTransferencia&()>& transferencia);

}  // namespace tsv::internal
