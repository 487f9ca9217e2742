#pragma once

#include <cstdint>
#include <optional>

#include "common/Statement.h"

// The journal keeps, in the transaction of each change, who made it, when, and the entry as it then stood. Its rows of
// changes are copied from the entry's own row, whose account and type must still exist: otherwise none is written.
namespace tsv::Module1 {

enum ACAO : std::int32_t {
  kInclusao = 1,
  kExclusao = 3,
  kBaixaTotal = 4,  // and both legs of a settled transfer
  kBaixaNaoRealizado = 5,
  kEstorno = 6,
  kBaixaParcial = 9,
};

// The row of an entry's change. correction: what the balances still have to be changed by, for an entry that is about
// to go.
Statement JournalOfEntry(ACAO acao, std::int32_t id, const std::optional<Literal>& correction = {});

// What the rows of transfers say differently from each other.
struct LegJournalText {
  Fragment Movement = " AS DESMOVIMENTACAO, NULL AS CODCENTROCUSTO";
  Fragment Ending = " AND L.CODCONTA = C.CODIGO)";
};

// The same for a leg of a transfer, whose type has a name of its own in the journal.
Statement JournalOfLeg(ACAO acao, std::int32_t id, const LegJournalText& text = {},
                       const std::optional<Literal>& correction = {});

}  // namespace tsv::Module1
