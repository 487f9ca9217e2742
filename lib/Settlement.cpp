#include <algorithm>
#include <limits>
#include <type_traits>
#include <utility>

#include "Loading.h"
#include "Requests.h"
#include "Tesovia.h"
#include "TransferLegs.h"
#include "common/BalanceCriteria.h"
#include "common/Balances.h"
#include "common/CDaoTrans.h"
#include "common/CHourGlass.h"
#include "common/Errors.h"
#include "common/Journal.h"
#include "common/Session.h"
#include "common/Statement.h"
#include "types/Conversions.h"

namespace tsv {

using namespace Module1;

namespace {

// What a commit has made true in the ledger must not fail to become true in memory.
static_assert(std::is_nothrow_move_assignable_v<CLancamento>);

constexpr std::string_view kOpen = "?";

constexpr std::string_view kJournalNotInserted =
    "Erro na gravação de histórico da baixa.\nO lançamento não foi baixado.";

// An entry that was not realised leaves the balances from its own on.
constexpr TextoDoDeslocamento kWithdrawal = {
    .Conta = "UPDATE Lancamentos Set SaldoConta = SaldoConta - Abs(",
    .RecDesp = ", SaldoRecDesp = SaldoRecDesp - Abs(",
    .CentroCusto = ",SaldoCentroCusto= SaldoCentroCusto - Abs(Not CodCentroCusto Is NULL And ",
    .Parceiro = ",SaldoParceiroComl = SaldoParceiroComl - Abs(Not IdParceiroComl Is NULL AND ",
    .Global = ", SaldoGlobal = SaldoGlobal - ",
    .Onde = " where DataId >= "};

std::int32_t NextVersion(std::int32_t idConcorrencia) {
  if (idConcorrencia == std::numeric_limits<std::int32_t>::max()) Raise(RuntimeError::Overflow);
  return idConcorrencia + 1;
}

// Writes the entry's values as they shall be, under the version that was read and only while all that classifies it is
// active: the joins with constant conditions require each of those rows, and find none otherwise.
Statement GuardedUpdate(const CLancamento& entry, std::int32_t version) {
  const Literal centre = TextOrNull(entry.CodCentroCusto());
  const Literal partner = NumberOrNull(entry.IdParceiroComl());
  const Literal account = TextLiteral(entry.CodConta());
  const Literal type = TextLiteral(entry.CodRecDesp());
  Statement update;
  update << "UPDATE ";
  if (!centre.IsNull()) update << "(";
  if (!partner.IsNull()) update << "(";
  update << "(LANCAMENTOS AS L INNER JOIN CONTAS AS C ON (L.ID=" << NumberLiteral(entry.Id())
         << " AND L.IdConcorrencia=" << NumberLiteral(version) << " AND L.Id * 0 = C.Id * 0 AND " << account
         << " = C.Codigo AND C.Inativa = False ANd C.Excluida=False )) INNER JOIN TiposMovimentacoes AS T ON "
            "(L.Id * 0 = T.Id * 0 AND "
         << type << " = T.Codigo AND T.Inativo = False ANd T.Excluido=False )";
  if (!centre.IsNull()) {
    update << ") Inner Join CentrosDeCusto As U ON (L.Id * 0 = U.Id * 0 AND " << centre
           << " = U.Codigo And U.Inativo = False ANd U.Excluido=False )";
  }
  if (!partner.IsNull()) {
    update << ") Inner Join ParceirosComerciais as P ON (L.Id * 0 = P.Id * 0 And " << partner
           << " = P.Id AND P.Inativo = False)";
  }
  update << " SET L.DATA=" << DateLiteral(ToDate(entry.Data())) << ",L.Valor=" << AmountLiteral(entry.Valor())
         << ",L.DataId=" << TextLiteral(entry.DataId()) << ",L.CodConta=" << account << ", L.CodRecDesp=" << type
         << ", L.CodCentroCusto = " << centre << ",L.IdParceiroComl = " << partner
         << ",L.Documento=" << TextOrNull(entry.Documento()) << ",L.Historico=" << TextLiteral(entry.Historico())
         << ",L.IdUsuario=" << NumberLiteral(CurrentSession().IdUsuario);
  return update;
}

void ExecuteGuarded(const Statement& update) {
  update.ExecuteOrRefuse(TS_ERRO_BAIXA,
                         "Não foi possível baixar o lançamento.\nPossível causa: outro usuário alterou lançamento ou a "
                         "conta de capital ou de receita/despesa foi desativada.");
}

// Takes the amount of an entry out of its own balances in memory.
void Withdraw(CLancamento& entry) {
  const Currency valor = entry.Valor();
  entry.SaldoConta(entry.SaldoConta() - valor);
  entry.SaldoRecDesp(entry.SaldoRecDesp() - valor);
  entry.SaldoGlobal(entry.SaldoGlobal() - valor);
  if (!entry.CodCentroCusto().empty()) entry.SaldoCentroCusto(entry.SaldoCentroCusto() - valor);
  if (entry.IdParceiroComl() != 0) entry.SaldoParceiroComl(entry.SaldoParceiroComl() - valor);
}

void BaixarNaoRealizado(CBaixa& baixa) {
  UnderHandler("em Tesovia.BaixarNaoRealizado", [&] {
    CLancamento& entry = *internal::LancamentoDe(baixa);
    const bool counted = entry.Realizado() == "S" || entry.Realizado() == kOpen;
    CLancamento settled = entry;
    settled.Realizado("N");
    settled.IdConcorrencia(NextVersion(entry.IdConcorrencia()));
    if (counted) Withdraw(settled);

    const CHourGlass busy;
    CDaoTrans transaction;
    transaction.BegTrans();
    Statement update = GuardedUpdate(entry, entry.IdConcorrencia());
    update << ",L.Realizado='N', L.IdConcorrencia = L.IdConcorrencia + 1";
    ExecuteGuarded(update);
    if (counted) DeslocarSaldos(internal::ClasseDe(entry), entry.Valor(), entry.DataId(), kWithdrawal);
    JournalOfEntry(kBaixaNaoRealizado, entry.Id()).ExecuteOrRefuse(TS_ERRO_BAIXA, kJournalNotInserted);
    transaction.ComTrans();
    entry = std::move(settled);
  });
}

Efeito EfeitoDe(const CLancamento& entry) {
  // The day of the key, should the date say otherwise: other rows stand before or after the entry by its key.
  return {entry.DataId(), DiaDe(entry.DataId()), internal::ClasseDe(entry), entry.Valor()};
}

// The balances that the entry has at its new place: all that stands before it, and its new amount.
void ExpectBalances(CLancamento& novo, const CLancamento& antigo) {
  const Classificacao classe = internal::ClasseDe(novo);
  const Saldos before = LerSaldosAte(classe.IdParceiroComl, CentroOuNenhum(classe), classe.CodConta, classe.CodRecDesp,
                                     novo.DataId(), antigo.DataId());
  // What was read holds the old amount only at an unchanged place.
  const Currency change = novo.DataId() == antigo.DataId() ? novo.Valor() - antigo.Valor() : novo.Valor();
  novo.SaldoConta(before.Conta + change);
  novo.SaldoRecDesp(before.RecDesp + change);
  novo.SaldoCentroCusto(novo.CodCentroCusto().empty() ? Currency() : before.CentroCusto + change);
  novo.SaldoParceiroComl(novo.IdParceiroComl() == 0 ? Currency() : before.ParceiroComl + change);
  novo.SaldoGlobal(before.Global + change);
}

// What full and partial settlement have in common: the forecast becomes the realised entry, on the day and of the
// amount of its realisation. It keeps its id, so it may change its place among the entries.
void BaixarRealizado(CBaixa& baixa, ACAO acao, std::string_view journalNotInserted) {
  const std::shared_ptr<CLancamento> antigo = internal::LancamentoDe(baixa);
  const auto novo = std::make_shared<CLancamento>(*antigo);
  const Date realised = ToDate(baixa.DataRealizacao());
  novo->Data(realised);
  novo->Valor(baixa.ValorBaixado());
  novo->ValorPago(baixa.ValorBaixado());
  novo->Realizado("S");
  novo->IdUsuario(CurrentSession().IdUsuario);
  novo->DataId(MontarDataId(realised, novo->Id()));
  novo->IdConcorrencia(NextVersion(antigo->IdConcorrencia()));
  ExpectBalances(*novo, *antigo);

  Statement update = GuardedUpdate(*novo, antigo->IdConcorrencia());
  update << ",L.Realizado='S', L.IdConcorrencia = L.IdConcorrencia + 1,L.ValorPago=" << AmountLiteral(novo->ValorPago())
         << ",L.SaldoConta=" << AmountLiteral(novo->SaldoConta())
         << ",L.SaldoRecDesp=" << AmountLiteral(novo->SaldoRecDesp())
         << ",L.SaldoCentroCusto=" << AmountLiteral(novo->SaldoCentroCusto())
         << ",L.SaldoParceiroComl=" << AmountLiteral(novo->SaldoParceiroComl())
         << ",L.SaldoGlobal=" << AmountLiteral(novo->SaldoGlobal())
         << " WHERE L.Realizado = '?' AND L.Estornado = False";
  Statement shift;
  shift << "UPDATE Lancamentos Set " << MontaCriteriosParaAtualizarSaldos(EfeitoDe(*novo), EfeitoDe(*antigo))
        << " where DataId > " << TextLiteral(std::min(novo->DataId(), antigo->DataId())) << " And Id <> "
        << NumberLiteral(novo->Id());

  const CHourGlass busy;
  CDaoTrans transaction;
  transaction.BegTrans();
  ExecuteGuarded(update);
  shift.Execute();
  JournalOfEntry(acao, novo->Id()).ExecuteOrRefuse(TS_ERRO_BAIXA, journalNotInserted);
  const Saldos expected = {novo->SaldoConta(), novo->SaldoRecDesp(), novo->SaldoCentroCusto(),
                           novo->SaldoParceiroComl(), novo->SaldoGlobal()};
  ExigirSaldos(internal::ClasseDe(*novo), novo->DataId(), antigo->DataId(), expected, TS_ERRO_BAIXA);
  transaction.ComTrans();
  *antigo = std::move(*novo);
}

void BaixarTotal(CBaixa& baixa) {
  UnderHandler("em Tesovia.BaixarTotal", [&] { BaixarRealizado(baixa, kBaixaTotal, kJournalNotInserted); });
}

void BaixarParcial(CBaixa& baixa) {
  UnderHandler("em Tesovia.BaixarParcial", [&] {
    BaixarRealizado(baixa, kBaixaParcial,
                    "Erro na gravação de histórico da atualização.\nO lançamento não foi atualizado.");
  });
}

void SettleLeg(const internal::Perna& leg, std::int32_t version, bool realised) {
  Statement update;
  update << "UPDATE LANCAMENTOS AS L INNER JOIN CONTAS AS C ON (L.ID=" << NumberLiteral(leg.Id)
         << " AND L.IdConcorrencia=" << NumberLiteral(version)
         << " AND L.CodConta = C.Codigo AND C.Inativa = False ANd C.Excluida=False ) SET L.IdUsuario="
         << NumberLiteral(CurrentSession().IdUsuario);
  if (realised) {
    update << ",L.ValorPago=" << AmountLiteral(leg.Valor) << ",L.Realizado='S'";
  } else {
    update << ",L.Realizado='N'";
  }
  update << ", L.IdConcorrencia = L.IdConcorrencia + 1 WHERE L.Realizado = '?' AND L.Estornado = False";
  update.ExecuteOrRefuse(TS_ERRO_BAIXA,
                         "A baixa do lançamento não ocorreu. Um motivo pode ser o de outro usuário ter acabado de "
                         "estorná-lo ou baixá-lo.\nAtualize sua pesquisa.");
  if (!realised) DeslocarSaldos(internal::ClasseDaPerna(leg.CodConta), leg.Valor, leg.DataId, kWithdrawal);
  JournalOfLeg(kBaixaTotal, leg.Id).ExecuteOrRefuse(TS_ERRO_BAIXA, kJournalNotInserted);
}

void BaixaDeTransferencia(CBaixa& baixa) {
  UnderHandler("em Tesovia_BaixaDeTransferencia", [&] {
    const TIPO_BAIXA kind = baixa.TipoBaixa();
    if (kind == BAIXA_PARCIAL) GerarErro(TS_ERRO_BAIXA, "Não é permitida baixa parcial de transferências.");
    if (kind != BAIXA_TOTAL && kind != BAIXA_NAO_REALIZADO) return;

    CLancamento& entry = *internal::LancamentoDe(baixa);
    const internal::Pernas pernas = internal::LerPernas(entry.Id(), TS_ERRO_BAIXA);
    const CHourGlass busy;
    CDaoTrans transaction;
    transaction.BegTrans();
    const auto settle = [&](const internal::Perna& leg) {
      SettleLeg(leg, leg.Id == entry.Id() ? baixa.IdConcorrencia() : leg.IdConcorrencia, kind == BAIXA_TOTAL);
    };
    settle(pernas.Saida);
    settle(pernas.Entrada);
    const std::shared_ptr<CLancamento> settled = internal::CarregarLancamentoTS(entry.Id());
    transaction.ComTrans();
    entry = std::move(*settled);
  });
}

}  // namespace

std::shared_ptr<CLancamento> internal::BaixarLancamentoTS(const std::function<CBaixa&()>& baixa) {
  return UnderHandler("em Tesovia.BaixarLancamentoTS", [&] {
    BancoAberto();
    CBaixa& Baixa = baixa();
    internal::AnexarLancamento(
        Baixa, internal::CarregarVersao(Baixa.IdLancamento(), Baixa.IdConcorrencia(), TS_ERRO_BAIXA,
                                        "O lançamento não foi localizado ou outro usuário o alterou enquanto você o "
                                        "acessava. A baixa não se realizou."));
    const std::shared_ptr<CLancamento> lancamento = internal::LancamentoDe(Baixa);
    if (lancamento->Realizado() != kOpen) GerarErro(TS_ERRO_JA_BAIXADO, "O lançamento já está baixado.");
    internal::Validar(Baixa);

    if (lancamento->Transferencia() != 0) {
      BaixaDeTransferencia(Baixa);
    } else if (Baixa.TipoBaixa() == BAIXA_NAO_REALIZADO) {
      BaixarNaoRealizado(Baixa);
    } else if (Baixa.TipoBaixa() == BAIXA_TOTAL) {
      BaixarTotal(Baixa);
    } else if (Baixa.TipoBaixa() == BAIXA_PARCIAL) {
      BaixarParcial(Baixa);
    }
    return lancamento;
  });
}

std::shared_ptr<CLancamento> Tesovia::BaixarLancamentoTS(CBaixa& Baixa) {
  return internal::BaixarLancamentoTS([&]() -> CBaixa& { return Baixa; });
}

}  // namespace tsv
