#include "Requests.h"

#include <gtest/gtest.h>

#include <string>

#include "Collection.h"
#include "support/Company.h"
#include "support/LimitedText.h"
#include "support/Messages.h"

using namespace tsv;
using namespace tsv::test;

namespace {

Currency Units(std::int64_t tenThousandths) { return Currency::FromTenThousandths(tenThousandths); }

constexpr const char* kLongCode = "Código de conta não pode ter mais do que 31 caracteres.";
constexpr const char* kLongHistory = "Histórico não deve ter mais do que 50 caracteres.";
constexpr const char* kLongDocument = "Documento não deve ter mais do que 15 caracteres.";

#define PROPERTY(name) &CTransferencia::name, &CTransferencia::name
const LimitedText<CTransferencia> kTexts[] = {
    {PROPERTY(CodContaOrigem), 31, kLongCode, "em CTransferencia.CodContaOrigem"},
    {PROPERTY(CodContaDestino), 31, kLongCode, "em CTransferencia.CodContaDestino"},
    {PROPERTY(HistoricoSaida), 50, kLongHistory, "em CTransferencia.HistoricoSaida"},
    {PROPERTY(HistoricoEntrada), 50, kLongHistory, "em CTransferencia.HistoricoEntrada"},
    {PROPERTY(DocumentoSaida), 15, kLongDocument, "em CTransferencia_DocumentoSaida"},
    {PROPERTY(DocumentoEntrada), 15, kLongDocument, "em CTransferencia_DocumentoEntrada"},
};
#undef PROPERTY

TEST(TransferRequest, TextsAreTrimmedAndLimited) { ExpectLimited(kTexts, TS_ERRO_TRANSFERENCIA); }

TEST(TransferRequest, ALaterRefusalCarriesTheOriginOfTheFirst) {
  OnAnotherThread([] {
    CTransferencia request;
    ErrorOf([&] { request.CodContaOrigem(std::string(32, 'x')); });
    ExpectErro(ErrorOf([&] { request.DocumentoSaida(std::string(16, 'x')); }), TS_ERRO_TRANSFERENCIA, kLongDocument,
               "em CTransferencia.CodContaOrigem");
    ExpectErro(ErrorOf([] { internal::Validar(CBaixa()); }), TS_ERRO_BAIXA,
               "Faltando informar o identificador do lançamento a ser baixado.", "em CTransferencia.CodContaOrigem");
  });
}

TEST(TransferRequest, IsChecked) {
  struct Case {
    std::int64_t amount;
    Date date;
    const char* texts[4];  // the two histories and the two accounts
    const char* refusal;   // none: it passes
  };
  constexpr const char* kInvalidDate = "Data de transferência inválida.";
  const Date day = Day(2008, 7, 5);
  const Case cases[] = {
      {1, Day(1932, 1, 1), {"x", "x", "1", "1"}, nullptr},  // the accounts are not compared
      {-1, Date::FromCivil({2028, 12, 31, 23, 59, 59}), {"x", "x", "1", "2"}, nullptr},
      {0, Date(), {"", "", "", ""}, "Valor de transferência não pode ser zero."},
      {1, Date(), {"", "", "", ""}, kInvalidDate},
      {1, Day(1931, 12, 31), {"x", "x", "1", "2"}, kInvalidDate},
      {1, Day(2029, 1, 1), {"x", "x", "1", "2"}, kInvalidDate},
      {1, day, {"  ", "", "", ""}, "Informar histórico de saída."},
      {1, day, {"x", " ", "", ""}, "Informar histórico de entrada."},
      {1, day, {"x", "x", " ", ""}, "Informar código da conta de orígem."},
      {1, day, {"x", "x", "1", ""}, "Informar código da conta de destino."},
  };
  for (const Case& c : cases) {
    OnAnotherThread([&] {
      CTransferencia request = TransferOf(c.texts[2], c.texts[3], Units(c.amount), c.date);
      request.HistoricoSaida(c.texts[0]);
      request.HistoricoEntrada(c.texts[1]);
      if (c.refusal) {
        ExpectErro(ErrorOf([&] { internal::Validar(request); }), TS_ERRO_TRANSFERENCIA, c.refusal, "");
      } else {
        EXPECT_TRUE(internal::Validar(request));
      }
    });
  }
}

// The entry of a settlement: 200.00 out at that moment.
const Date kSameDay = Date::FromCivil({2008, 7, 5, 23, 59, 59});
const Date kNextDay = Day(2008, 7, 6);

struct Settlement {
  std::int32_t kind;
  std::int64_t settled;  // in ten-thousandths
  Variant date;
  std::int32_t number;  // 0: it passes
  const char* refusal = "";
  std::uint8_t leg = 0;
  std::int64_t amount = -200'0000;
  bool reversed = false;
  bool reversal = false;
};

TEST(SettlementRequest, IsHeldAgainstItsEntry) {
  constexpr std::int32_t kZero = 11;
  const char* zero = TextOf(RuntimeError::DivisionByZero);
  const char* reversed = "Lançamentos estornados ou que sejam estorno de outro não podem ser baixados.";
  const Variant none;
  const Variant text = std::string("ontem");
  const Settlement cases[] = {
      {0, 0, none, TS_ERRO_BAIXA, reversed, 0, 0, true, false},
      {3, 0, none, TS_ERRO_BAIXA, reversed, 1, 0, false, true},
      {1, 50'0000, none, TS_ERRO_BAIXA, kOtherSign},
      {3, 200'0000, none, TS_ERRO_BAIXA, kOtherSign},
      {2, -1, none, TS_ERRO_BAIXA, kOtherSign, 2, 1},
      {1, 0, kMoment, kZero, zero},
      {3, 0, none, kZero, zero},
      {1, -1, kMoment, kZero, zero, 0, 0},

      {3, -200'0000, kMoment, 0},
      {3, -200'0000, kSameDay, 0, "", 1},
      {3, -200'0000, kNextDay, TS_ERRO_BAIXA, kUnrealisedMoved},
      {3, -200'0000, Day(2008, 7, 4), TS_ERRO_BAIXA, kUnrealisedMoved},
      {3, -1, none, TS_ERRO_BAIXA, kUnrealisedMoved},
      {3, -199'9999, kSameDay, TS_ERRO_BAIXA, kUnrealisedChanged},

      {1, -200'0000, kNextDay, 0},
      {1, -200'0000, std::string("06/07/2008"), 0},
      {1, -199'9999, none, TS_ERRO_BAIXA, kNotTotal, 1},
      {1, -200'0000, kMoment, 0, "", 1},
      {1, -200'0000, kSameDay, TS_ERRO_BAIXA, kLegMoved, 1},
      {1, -200'0000, none, TS_ERRO_BAIXA, kLegMoved, 2},

      {2, -50'0000, kNextDay, 0},
      {2, -250'0000, none, TS_ERRO_BAIXA, kPartialLeg, 1},
      {2, -200'0001, none, TS_ERRO_BAIXA, kTooMuch},
      {2, 200'0001, none, TS_ERRO_BAIXA, kTooMuch, 0, 200'0000},
      {2, -200'0000, none, TS_ERRO_BAIXA, kNotPartial},
      {2, -199'9999, none, TS_ERRO_BAIXA, kNoDate},
      {2, -50'0000, text, TS_ERRO_BAIXA, kBadDate},
      {1, -200'0000, std::string("30/02/2008"), TS_ERRO_BAIXA, kBadDate},

      {0, -999'0000, kMoment, 0},
      {4, -1, none, TS_ERRO_BAIXA, kNoDate},
      {4, -1, std::int32_t{39634}, TS_ERRO_BAIXA, kBadDate},
  };
  for (const Settlement& c : cases) {
    OnAnotherThread([&] {
      SCOPED_TRACE("case " + std::to_string(&c - cases));
      const auto entry = std::make_shared<CLancamento>();
      entry->Valor(Units(c.amount));
      entry->Data(kMoment);
      entry->Transferencia(c.leg);
      entry->Estornado(c.reversed);
      entry->Estorno(c.reversal);
      CBaixa request = SettlementOf(1, static_cast<TIPO_BAIXA>(c.kind), Units(c.settled), c.date);
      internal::AnexarLancamento(request, entry);
      if (c.number == 0) {
        EXPECT_TRUE(internal::Validar(request));
      } else {
        ExpectErro(ErrorOf([&] { internal::Validar(request); }), c.number, c.refusal, "");
      }
      request.IdLancamento(0);
      EXPECT_EQ(ErrorOf([&] { internal::Validar(request); }).Descricao(),
                "Faltando informar o identificador do lançamento a ser baixado.");
    });
  }
}

TEST(Entries, StandInACollectionAsAdded) {
  Collection entries;
  for (const std::int32_t id : {30, 10, 20}) {
    entries.Add(std::make_shared<CLancamento>());
    entries.Item(entries.Count())->Id(id);
  }
  entries.Remove(2);
  EXPECT_EQ(entries.Item(1)->Id(), 30);
  EXPECT_EQ((*std::next(entries.begin()))->Id(), 20);
  for (const std::int32_t outside : {0, 3, -1}) {
    EXPECT_EQ(ErrorOf([&] { entries.Item(outside); }).Numero(), 9);
    EXPECT_EQ(ErrorOf([&] { entries.Remove(outside); }).Numero(), 9);
  }
}

}  // namespace
