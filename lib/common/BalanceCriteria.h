#pragma once

#include <string>

#include "common/Balances.h"
#include "common/Statement.h"
#include "types/Currency.h"
#include "types/Date.h"

namespace tsv::Module1 {

// An entry as the balances of other entries feel it: where it stands, whose it is, and how much.
struct Efeito {
  std::string DataId;
  Date Data;
  Classificacao Classe;
  Currency Valor;
};

// The assignments (the text after SET) of one update of Lancamentos that takes an entry's effect from where it stood
// to where it shall stand. They hold for the rows after the earlier of the two keys, the entry's own row left out; the
// update's condition sees to that. Which way the entry moves is decided by the calendar days of the two dates.
Statement MontaCriteriosParaAtualizarSaldos(const Efeito& novo, const Efeito& antigo);

}  // namespace tsv::Module1
