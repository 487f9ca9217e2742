#include <optional>

#include "Loading.h"
#include "Tesovia.h"
#include "TransferLegs.h"
#include "common/Balances.h"
#include "common/CDaoTrans.h"
#include "common/CHourGlass.h"
#include "common/Errors.h"
#include "common/Journal.h"
#include "common/Session.h"
#include "common/Statement.h"

namespace tsv {

using namespace Module1;

namespace {

constexpr TextoDoDeslocamento kShift = {
    .Parceiro = ", SaldoParceiroComl = SaldoParceiroComl + Abs(Not IdParceiroComl Is NULL AND IdParceiroComl = ",
    .TesteParceiro = ") * "};

// Settled as not realised, it is in no balance.
bool Counts(std::string_view realizado) { return realizado != "N"; }

// What the balances change by when the entry goes; nothing when it is in none.
std::optional<Literal> CorrectionFor(std::string_view realizado, Currency valor) {
  if (!Counts(realizado)) return {};
  return AmountLiteral(-valor);
}

void InsertJournal(const Statement& journal) {
  journal.ExecuteOrRefuse(TS_ERRO_EXCLUSAO,
                          "Erro na gravação de histórico da exclusão.\nO lançamento não foi excluído.");
}

// Only the row that was read is deleted: same version, same state, in no reversal.
void Delete(std::int32_t id, std::string_view realizado, std::int32_t idConcorrencia) {
  Statement remove;
  remove << "DELETE * FROM LANCAMENTOS WHERE Id = " << NumberLiteral(id) << " AND REALIZADO = " << TextOrNull(realizado)
         << " AND ESTORNADO = FALSE And ESTORNO = FALSE AND IDCONCORRENCIA =" << NumberLiteral(idConcorrencia);
  remove.ExecuteOrRefuse(TS_ERRO_EXCLUSAO,
                         "Não foi possível excluir o lançamento selecionado. Uma possível causa é que ele já tenha "
                         "sido modificado ou excluído por outro usuário enquanto você o visualizava. Verifique.");
}

void DeleteLeg(const internal::Perna& leg) {
  InsertJournal(JournalOfLeg(kExclusao, leg.Id, {}, CorrectionFor(leg.Realizado, leg.Valor)));
  Delete(leg.Id, leg.Realizado, leg.IdConcorrencia);
  if (Counts(leg.Realizado)) {
    internal::DeslocarSaldosDaPerna(internal::ClasseDaPerna(leg.CodConta), -leg.Valor, leg.DataId);
  }
}

// The link between the legs stays: it tells what the journal's two rows belong to.
void ExclusaoDeTransferencia(const CLancamento& lancamento) {
  UnderHandler("em Tesovia_ExclusaoDeTransferencia", [&] {
    const auto [outgoing, incoming] = internal::LerPernas(lancamento.Id(), TS_ERRO_EXCLUSAO);
    const CHourGlass busy;
    CDaoTrans transaction;
    transaction.BegTrans();
    DeleteLeg(outgoing);
    DeleteLeg(incoming);
    transaction.ComTrans();
  });
}

void RefuseReversed(const CLancamento& lancamento) {
  if (lancamento.Estornado()) {
    GerarErro(TS_ERRO_EXCLUSAO,
              "Lançamento estornado somente é excluído na exclusão de conta, receita/despesa, centro de custo/lucro ou "
              "cliente/fornecedor informado nele.");
  }
  if (lancamento.Estorno()) {
    GerarErro(TS_ERRO_EXCLUSAO,
              "Lançamento que seja estorno de outro somente é excluído na exclusão de conta, receita/despesa, centro "
              "de custo/lucro ou cliente/fornecedor informado nele.");
  }
}

}  // namespace

void Tesovia::ExcluirLancamentoTS(std::int32_t IdLancamento, std::int32_t IdConcorrencia) {
  const auto body = [&] {
    BancoAberto();
    const auto lancamento = internal::CarregarVersao(
        IdLancamento, IdConcorrencia, TS_ERRO_EXCLUSAO,
        "O lançamento não foi localizado ou outro usuário o alterou enquanto você o acessava. A exclusão não se "
        "realizou.");
    RefuseReversed(*lancamento);
    if (lancamento->Transferencia() != 0) return ExclusaoDeTransferencia(*lancamento);

    const CHourGlass busy;
    CDaoTrans transaction;
    transaction.BegTrans();
    InsertJournal(
        JournalOfEntry(kExclusao, lancamento->Id(), CorrectionFor(lancamento->Realizado(), lancamento->Valor())));
    Delete(lancamento->Id(), lancamento->Realizado(), lancamento->IdConcorrencia());
    if (Counts(lancamento->Realizado())) {
      DeslocarSaldos(internal::ClasseDe(*lancamento), -lancamento->Valor(), lancamento->DataId(), kShift);
    }
    transaction.ComTrans();
  };
  // The prefix is longer than what it is compared with, so this origin always takes the place of the inner one.
  UnderHandler(" Em Tesovia.ExcluirLancamentoTS", body, " Em ");
}

}  // namespace tsv
