#include <optional>
#include <string>

#include "EntryColumns.h"
#include "Loading.h"
#include "Tesovia.h"
#include "common/Balances.h"
#include "common/CDaoTrans.h"
#include "common/CHourGlass.h"
#include "common/Errors.h"
#include "common/Journal.h"
#include "common/MessageBox.h"
#include "common/Recordsets.h"
#include "common/Session.h"
#include "common/Statement.h"
#include "db/LedgerSchema.h"
#include "types/Conversions.h"

namespace tsv {

using namespace Module1;

namespace {

struct EntryLiterals : internal::EntryColumns {
  explicit EntryLiterals(const CLancamento& entry)
      : EntryColumns{TextOrNull(entry.Documento()),
                     AmountLiteral(entry.Valor()),
                     DateLiteral(ToDate(entry.Data())),
                     DateLiteral(ToDate(entry.DataReferencia())),
                     DateLiteral(ToDate(entry.DataVencimento())),
                     TextLiteral(entry.Historico()),
                     TextLiteral(entry.DataId()),
                     AmountLiteral(entry.SaldoGlobal()),
                     AmountLiteral(entry.SaldoConta()),
                     AmountLiteral(entry.SaldoRecDesp())},
        Id(NumberLiteral(entry.Id())),
        CodConta(TextLiteral(entry.CodConta())),
        CodRecDesp(TextLiteral(entry.CodRecDesp())),
        CodCentroCusto(TextOrNull(entry.CodCentroCusto())),
        IdParceiroComl(NumberOrNull(entry.IdParceiroComl())),
        SaldoCentroCusto(AmountLiteral(entry.SaldoCentroCusto())),
        SaldoParceiroComl(AmountLiteral(entry.SaldoParceiroComl())),
        IdUsuario(NumberLiteral(entry.IdUsuario())),
        DesUsuario(TextLiteral(CurrentSession().DesUsuario)),
        Realizado(TextLiteral(entry.Realizado())) {}

  Literal Id, CodConta, CodRecDesp, CodCentroCusto, IdParceiroComl;
  Literal SaldoCentroCusto, SaldoParceiroComl, IdUsuario, DesUsuario, Realizado;
};

// The master rows of the entry, each found once when it is active and not at all otherwise: what selects from them
// inserts one row or none. The products with zero only relate tables that have nothing else in common.
void AppendActiveMasters(Statement& statement, const EntryLiterals& entry) {
  const bool hasCentre = !entry.CodCentroCusto.IsNull();
  const bool hasPartner = !entry.IdParceiroComl.IsNull();
  if (hasCentre) statement << ", CentrosDeCusto As U";
  if (hasPartner) statement << ", ParceirosComerciais As P";
  statement << " WHERE C.Codigo = " << entry.CodConta
            << " AND C.Inativa = False AND C.Excluida=False AND T.Codigo = " << entry.CodRecDesp
            << " AND T.Inativo = False AND T.Excluido=False AND Len(C.Codigo) * 0 = Len(T.Codigo) * 0 ";
  if (hasCentre) {
    statement << " AND U.Codigo = " << entry.CodCentroCusto
              << " AND U.Inativo = False AND U.Excluido=False AND Len(T.Codigo) * 0 = Len(U.Codigo) * 0 ";
  }
  if (hasPartner) {
    statement << " AND P.Id = " << entry.IdParceiroComl << " AND P.Inativo = False AND Len(T.Codigo) * 0 = P.Id * 0";
  }
}

Statement EntryInsert(const EntryLiterals& entry) {
  Statement insert;
  insert << "INSERT INTO LANCAMENTOS Select " << entry.Id << " As Id, " << entry.CodConta << " As CodConta,"
         << entry.CodRecDesp << " As CodRecDesp, " << entry.CodCentroCusto << " As CodCentroCusto, "
         << entry.IdParceiroComl << " As IdParceiroComl, ";
  AppendColumns(insert, entry);
  insert << entry.SaldoCentroCusto << " As SaldoCentroCusto, " << entry.SaldoParceiroComl << " As SaldoParceiroComl, "
         << entry.IdUsuario << " As IdUsuario," << entry.Realizado
         << " As Realizado, 0 as IdConcorrencia FROM Contas As C, TiposMovimentacoes As T ";
  AppendActiveMasters(insert, entry);
  return insert;
}

// The two partial balances and the marks are left to the journal's defaults: a new entry has none of them yet.
Statement JournalInsert(const EntryLiterals& entry) {
  const Fragment none("NULL");
  const bool hasCentre = !entry.CodCentroCusto.IsNull();
  const bool hasPartner = !entry.IdParceiroComl.IsNull();
  Statement insert;
  insert << "INSERT INTO HISTORICOSDELANCAMENTOS Select " << DateLiteral(CurrentSession().host->Now())
         << " AS DataHora," << NumberLiteral(kInclusao) << " As IdAcao," << entry.Id << " As Id, " << entry.CodConta
         << " As CodConta, C.DesConta," << entry.CodRecDesp << " As CodRecDesp,T.DesMovimentacao, "
         << entry.CodCentroCusto << " As CodCentroCusto, " << (hasCentre ? Fragment("U.DesCentroDeCusto") : none)
         << " As DesCentroDeCusto," << entry.IdParceiroComl << " As IdParceiroComl,"
         << (hasPartner ? Fragment("P.Nome") : none) << " As NomeParceiro,"
         << (hasPartner ? Fragment("P.Filial") : none) << " As Filial,";
  AppendColumns(insert, entry);
  insert << entry.IdUsuario << " As IdUsuario," << entry.DesUsuario << " As DesUsuario," << entry.Realizado
         << " As Realizado FROM Contas As C , TiposMovimentacoes As T ";
  AppendActiveMasters(insert, entry);
  return insert;
}

// A type may take only incoming amounts, or only outgoing ones. The code is looked up as the client gave it.
void RefuseWrongSign(std::string_view codRecDesp, Currency valor) {
  constexpr std::int32_t kIncomingOnly = 1;
  constexpr std::int32_t kOutgoingOnly = 2;
  Statement select;
  select << "Select Tipo From TiposMovimentacoes Where Codigo=" << TextLiteral(codRecDesp);
  const ScopedRecordset type(internal::AbrirRecordset(select.Text(), db::dbOpenSnapshot));
  if (type->RecordCount() == 0) {
    GerarErro(TS_ERRO_LANCAMENTO, "Receita/despesa informada para o lançamento não existe.");
  }
  const Variant accepted = type->Fields("Tipo").Value();
  if (IsNull(accepted)) return;
  if (valor < Currency() && ToLong(accepted) == kIncomingOnly) {
    GerarErro(TS_ERRO_LANCAMENTO,
              "A receita/despesa informada está especificada para aceitar apenas lançamentos de entrada,"
              "mas o valor informado é de saída.");
  }
  if (valor > Currency() && ToLong(accepted) == kOutgoingOnly) {
    GerarErro(TS_ERRO_LANCAMENTO,
              "A receita/despesa informada está especificada para aceitar apenas lançamentos de saída, "
              "mas o valor informado é de entrada.");
  }
}

constexpr TextoDoDeslocamento kShift = {
    .CentroCusto = ", SaldoCentroCusto = SaldoCentroCusto + Abs(Not CodCentroCusto Is NULL AND "};

constexpr std::string_view kEntryNotInserted = "Não foi possível incluir o lançamento.";
constexpr std::string_view kJournalNotInserted = "Não foi possível incluir o histórico do lançamento.";
constexpr std::string_view kLikelyCause =
    "Possível causa: a conta, receita/despesa, centro de custo/lucro ou cliente/fornecedor foi desativado.";

}  // namespace

std::shared_ptr<CLancamento> Tesovia::FazerLancamentoTS(Date DataPrevisao, Date DataReferencia, Currency Valor,
                                                        std::string_view Historico, std::string_view CodConta,
                                                        std::string_view CodRecDesp, std::string_view CodCentroDeCusto,
                                                        std::int32_t IdParceiroComl, std::string_view Documento) {
  return UnderHandler("em Tesovia.FazerLancamentoTS ", [&] {
    BancoAberto();
    RefuseWrongSign(CodRecDesp, Valor);

    auto lancamento = std::make_shared<CLancamento>();
    lancamento->CodConta(CodConta);
    lancamento->CodRecDesp(CodRecDesp);
    lancamento->Data(DataPrevisao);
    lancamento->DataReferencia(DataReferencia);
    lancamento->DataVencimento(DataPrevisao);
    lancamento->Valor(Valor);
    lancamento->Historico(Historico);
    lancamento->Documento(Documento);
    lancamento->CodCentroCusto(CodCentroDeCusto);
    lancamento->IdParceiroComl(IdParceiroComl);
    lancamento->IdUsuario(CurrentSession().IdUsuario);
    lancamento->Validar();
    lancamento->Realizado("?");

    const Classificacao classificacao = internal::ClasseDe(*lancamento);
    const LugarNovo lugar = LerLugar(classificacao, DataPrevisao, Valor);
    lancamento->SaldoParceiroComl(lugar.Novos.ParceiroComl);
    lancamento->SaldoCentroCusto(lugar.Novos.CentroCusto);
    lancamento->SaldoConta(lugar.Novos.Conta);
    lancamento->SaldoRecDesp(lugar.Novos.RecDesp);
    lancamento->SaldoGlobal(lugar.Novos.Global);
    lancamento->Id(lugar.Id);
    lancamento->DataId(lugar.DataId);
    const EntryLiterals literals(*lancamento);

    std::optional<CHourGlass> busy(std::in_place);
    CDaoTrans transaction;
    transaction.BegTrans();

    const Statement claim = Reivindicacao(lugar.Serial);
    const Statement insert = EntryInsert(literals);
    const Statement journal = JournalInsert(literals);
    const Statement shift = Deslocamento(classificacao, Valor, lugar.DataId, kShift);
    const std::string_view codCCusto =
        classificacao.CodCentroCusto.empty() ? db::kNoCostCentreToVerify : classificacao.CodCentroCusto;
    Anunciar({&claim, &insert, &journal, &shift},
             ConsultaDeSaldosAte(classificacao.IdParceiroComl, codCCusto, classificacao.CodConta,
                                 classificacao.CodRecDesp, lugar.DataId, " "));
    ReivindicarSerial(lugar.Serial, TS_ERRO_LANCAMENTO);

    // The box has told the user why; the error without a text keeps the client from telling it again.
    const auto explainAndFail = [&](std::string_view reason) {
      transaction.RollBack();
      busy.reset();
      MsgBox(std::string(reason).append("\n").append(kLikelyCause));
      throw Erro(TS_ERRO_LOGIN);
    };
    if (insert.Execute() == 0) explainAndFail(kEntryNotInserted);
    if (journal.Execute() == 0) explainAndFail(kJournalNotInserted);

    shift.Execute();

    if (!VerificarApos(classificacao.IdParceiroComl, codCCusto, classificacao.CodConta, classificacao.CodRecDesp,
                       lugar.DataId, " ", lugar.Novos)) {
      GerarErro(TS_ERRO_LANCAMENTO,
                "Algumas informações de controle que afetam esta operação foram modificadas simultaneamente por outro "
                "usuário enquanto se dava a inclusão.\nPor favor, clique novamente em 'Confirmar'.");
    }
    transaction.ComTrans();
    return lancamento;
  });
}

}  // namespace tsv
