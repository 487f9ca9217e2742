#include "CLancamento.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "common/Errors.h"
#include "db/KeptRecordset.h"
#include "support/Ledger.h"
#include "support/LimitedText.h"

using namespace tsv;
using namespace tsv::test;

namespace {

Currency Reais(std::int64_t whole) { return Currency::FromInteger(whole); }

CLancamento CompleteEntry() {
  CLancamento entry;
  entry.CodConta("1.1");
  entry.CodRecDesp("2");
  entry.Data(Date::FromCivil(2008, 7, 5));
  entry.DataReferencia(Date::FromCivil(2008, 7, 1));
  entry.DataVencimento(std::string("05/07/2008"));
  entry.Historico("aluguel");
  entry.Valor(Reais(-10));
  entry.IdUsuario(1);
  return entry;
}

// The values of a stored entry, in the order of its columns.
std::vector<Variant> Stored() {
  return RowOf(1234, "20080705000001234", "1.1", "2", "3.3", 44, "NF 5", Reais(-10), Reais(6), Date(39634.5),
               Date(39630), Date(39640), "minúsculas", "E", true, false, std::uint8_t{2}, Reais(1), Reais(2), Reais(5),
               Reais(3), Reais(4), 7, 3);
}

// One row that needs no database: the stored values but for one of them.
db::KeptRecordset With(std::string_view column, const Variant& other) {
  const auto fields = std::make_shared<std::vector<db::FieldDescription>>();
  std::vector<Variant> row = Stored();
  for (const std::string& name : EntryColumns()) {
    if (name == column) row[fields->size()] = other;
    fields->push_back({name});
  }
  return {fields, std::move(row)};
}

TEST(Entry, TextsAreTrimmedBeforeTheirLimitCounts) {
  const LimitedText<CLancamento> texts[] = {
      {&CLancamento::CodConta, &CLancamento::CodConta, 31,
       "Código de conta de capital não pode ter mais do que 31 caracteres.", "em CLancamento.CodConta"},
      {&CLancamento::CodRecDesp, &CLancamento::CodRecDesp, 31,
       "Código de receita/despesa não pode ter mais do que 31 caracteres.", "em CLancamento.CodRecDesp"},
      {&CLancamento::CodCentroCusto, &CLancamento::CodCentroCusto, 31,
       "Código de centro de custo/lucro não pode ter mais do que 31 caracteres.", "em CLancamento.CodCentroCusto"},
      {&CLancamento::Documento, &CLancamento::Documento, 15, "Documento não deve ter mais do que 15 caracteres.",
       "em CLancamento.Documento"},
      {&CLancamento::Historico, &CLancamento::Historico, 50, "Histórico não deve ter mais do que 50 caracteres.",
       "em CLancamento.Historico"},
  };
  ExpectLimited(texts, TS_ERRO_LANCAMENTO);
}

TEST(Entry, DatesStayAsGiven) {
  struct Rule {
    void (CLancamento::*let)(const Variant&);
    const Variant& (CLancamento::*get)() const noexcept;
    const char* refusal;
    const char* origin;
  };
  const Rule rules[] = {
      {&CLancamento::Data, &CLancamento::Data, "Data de realização inválida.", "em CLancamento.Data"},
      {&CLancamento::DataReferencia, &CLancamento::DataReferencia, "Data de referência inválida.",
       "em CLancamento.DataReferencia, linha: 1"},
      {&CLancamento::DataVencimento, &CLancamento::DataVencimento, "Data de vencimento inválida.",
       "em CLancamento.DataVencimento, linha: 1"},
  };
  for (const Rule& rule : rules) {
    OnAnotherThread([&] {
      CLancamento entry;
      EXPECT_TRUE(IsEmpty((entry.*rule.get)()));
      (entry.*rule.let)(Date(39634.5));
      (entry.*rule.let)(Empty());
      (entry.*rule.let)(std::string("31/12/2008"));
      for (const Variant& wrong : {Variant(std::string("abc")), Variant(std::string("31/02/2008")), Variant(Null()),
                                   Variant(std::int32_t{39634})}) {
        ExpectErro(ErrorOf([&] { (entry.*rule.let)(wrong); }), TS_ERRO_LANCAMENTO, rule.refusal, rule.origin);
      }
      EXPECT_EQ((entry.*rule.get)(), Variant(std::string("31/12/2008")));
    });
  }
}

TEST(Entry, RealisedIsOneOfFourMarksOrEmpty) {
  CLancamento entry;
  for (const char* mark : {"?", "N", "E", "", " S "}) entry.Realizado(mark);
  for (const char* wrong : {"s", "X", "SS"}) {
    const Erro erro = ErrorOf([&] { entry.Realizado(wrong); });
    EXPECT_EQ(erro.Descricao(), "Informação inválida para o campo 'Realizado'.");
  }
  EXPECT_EQ(entry.Realizado(), "S");
}

TEST(Entry, ValidationNamesTheFirstThingMissing) {
  OnAnotherThread([] {
    ExpectErro(ErrorOf([] { CLancamento().Validar(); }), TS_ERRO_LANCAMENTO,
               "Faltando informar o código da conta de capital.", "em CLancamento.Validar");
  });
  const std::pair<std::function<void(CLancamento&)>, const char*> gaps[] = {
      {[](CLancamento& e) { e.IdUsuario(0); }, "Faltando informar o valor para 'IdUsuario' do lançamento."},
      {[](CLancamento& e) { e.Valor(Currency()); }, "Faltando informar o valor do lançamento."},
      {[](CLancamento& e) { e.Historico("  "); }, "Faltando informar o histórico do lançamento."},
      {[](CLancamento& e) { e.DataVencimento(Empty()); }, "Faltando informar a data de vencimento do lançamento."},
      {[](CLancamento& e) { e.DataReferencia(Empty()); }, "Faltando informar a data de referência do lançamento."},
      {[](CLancamento& e) { e.Data(Empty()); }, "Faltando informar a data da previsão do lançamento."},
      {[](CLancamento& e) { e.CodRecDesp(""); }, "Faltando informar o código da receita/despesa."},
      {[](CLancamento& e) { e.CodConta(""); }, "Faltando informar o código da conta de capital."},
  };
  CLancamento entry = CompleteEntry();
  EXPECT_TRUE(entry.Validar());
  // Each gap stands before the one made earlier, so its message must win.
  for (const auto& [open, message] : gaps) {
    open(entry);
    EXPECT_EQ(ErrorOf([&] { entry.Validar(); }).Descricao(), message);
  }
}

TEST(Entry, LoadsARowAsItIsAndCopiesItByTheRules) {
  CLancamento loaded;
  loaded.CarregarDeRegistro(With("", Null()));
  EXPECT_EQ(ValuesOf(loaded), Stored());
  const auto copy = loaded.Copiar();
  EXPECT_EQ(copy->Historico(), "MINÚSCULAS");
  EXPECT_EQ(loaded.Historico(), "minúsculas");
  loaded.Historico("minúsculas");
  EXPECT_EQ(ValuesOf(*copy), ValuesOf(loaded));

  OnAnotherThread([] {
    CLancamento broken;
    broken.CarregarDeRegistro(With("CodConta", std::string(32, '1')));
    ExpectErro(ErrorOf([&] { broken.Copiar(); }), TS_ERRO_LANCAMENTO,
               "Código de conta de capital não pode ter mais do que 31 caracteres.", "em CLancamento.CodConta");
  });
}

TEST(Entry, MissingValuesAreLoadedAsNone) {
  const std::pair<const char*, Variant> none[] = {
      {"CodCentroCusto", std::string()}, {"IdParceiroComl", 0},   {"Documento", std::string()},
      {"ValorPago", Currency()},         {"DataReferencia", 0.0}, {"SaldoCentroCusto", Currency()},
  };
  const std::vector<std::string> columns = EntryColumns();
  for (const auto& [column, value] : none) {
    CLancamento entry;
    entry.CarregarDeRegistro(With(column, Null()));
    EXPECT_EQ(ValuesOf(entry).at(std::ranges::find(columns, column) - columns.begin()), value) << column;
  }
}

TEST(Entry, AFailedLoadKeepsWhatItHadRead) {
  OnAnotherThread([] {
    CLancamento entry = CompleteEntry();
    const Erro erro = ErrorOf([&] { entry.CarregarDeRegistro(With("Historico", Null())); });
    EXPECT_EQ(erro.Numero(), 94);
    EXPECT_EQ(erro.Origem(), "Em CLancamento.CarregarDeRegistro");
    EXPECT_EQ(entry.DataId(), "20080705000001234");
    EXPECT_TRUE(entry.Estorno());
    EXPECT_EQ(entry.Historico(), "ALUGUEL");
    EXPECT_EQ(entry.IdUsuario(), 1);
  });
  OnAnotherThread([] {
    ExpectErro(ErrorOf([&] { CLancamento().CarregarDeRegistro(With("ValorPago", std::string("x"))); }),
               TS_ERRO_LANCAMENTO, "Valor não numérico.", "Em CLancamento.CarregarDeRegistro");
  });
}

}  // namespace
