#include "CLancamento.h"

#include <gtest/gtest.h>

#include <tuple>

#include <functional>

#include "common/Errors.h"
#include "support/Errors.h"

using namespace tsv;
using tsv::test::ErrorOf;
using tsv::test::ExpectErro;
using tsv::test::OnAnotherThread;

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

// One row that needs no database.
class Row : public db::Recordset {
 public:
  using Values = std::vector<std::pair<std::string, Variant>>;
  explicit Row(Values values) : values_(std::move(values)) {}

  void MoveFirst() override {}
  void MoveLast() override {}
  void MoveNext() override {}
  void MovePrevious() override {}
  bool BOF() const override { return false; }
  bool EndOfFile() const override { return false; }
  std::int32_t RecordCount() const override { return 1; }
  std::size_t FieldCount() const override { return values_.size(); }
  void Close() override {}

 private:
  const std::string& NameAt(std::size_t index) const override { return values_[index].first; }
  db::DataTypeEnum TypeAt(std::size_t) const override { return db::DataTypeEnum::dbText; }
  const Variant& ValueAt(std::size_t index) const override { return values_[index].second; }

  Values values_;
};

Row::Values StoredValues() {
  const Date date = Date::FromCivil({2008, 7, 5, 9, 30, 0});
  return {{"Id", std::int32_t{1234}},
          {"CodConta", std::string("1.1")},
          {"CodRecDesp", std::string("2")},
          {"CodCentroCusto", Null()},
          {"IdParceiroComl", Null()},
          {"Documento", Null()},
          {"Valor", Reais(-10)},
          {"ValorPago", Null()},
          {"Data", date},
          {"DataReferencia", Null()},
          {"DataVencimento", date},
          {"Historico", std::string("minúsculas")},
          {"DataId", std::string("20080705000001234")},
          {"SaldoConta", Reais(1)},
          {"SaldoRecDesp", Reais(2)},
          {"SaldoCentroCusto", Null()},
          {"SaldoParceiroComl", Reais(4)},
          {"SaldoGlobal", Reais(5)},
          {"IdUsuario", std::int32_t{7}},
          {"Realizado", std::string("E")},
          {"Estorno", true},
          {"Estornado", false},
          {"Transferencia", std::uint8_t{2}},
          {"IdConcorrencia", std::int32_t{3}}};
}

Row::Values With(Row::Values values, std::string_view column, Variant value) {
  for (auto& [name, current] : values) {
    if (name == column) current = std::move(value);
  }
  return values;
}

TEST(Entry, TextsAreTrimmedBeforeTheirLimitCounts) {
  struct Rule {
    void (CLancamento::*let)(std::string_view);
    const std::string& (CLancamento::*get)() const noexcept;
    std::size_t limit;
    const char* refusal;
    const char* origin;
  };
  const Rule rules[] = {
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
  for (const Rule& rule : rules) {
    OnAnotherThread([&] {
      CLancamento entry;
      std::string longest;
      for (std::size_t i = 0; i < rule.limit; ++i) longest += "Ç";
      (entry.*rule.let)("  " + longest + "   ");
      EXPECT_EQ((entry.*rule.get)(), longest);
      const Erro erro = ErrorOf([&] { (entry.*rule.let)(longest + "Ç"); });
      ExpectErro(erro, TS_ERRO_LANCAMENTO, rule.refusal, rule.origin);
      EXPECT_EQ((entry.*rule.get)(), longest);
    });
  }
}

TEST(Entry, HistoryIsKeptInUpperCase) {
  CLancamento entry;
  entry.Historico(" depósito à vista, ação nº 1 ");
  EXPECT_EQ(entry.Historico(), "DEPÓSITO À VISTA, AÇÃO Nº 1");
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

TEST(Entry, LoadsARowAsItIs) {
  CLancamento entry;
  entry.CarregarDeRegistro(Row(StoredValues()));
  EXPECT_EQ(entry.Id(), 1234);
  EXPECT_EQ(entry.CodConta(), "1.1");
  EXPECT_EQ(entry.CodCentroCusto(), "");
  EXPECT_EQ(entry.IdParceiroComl(), 0);
  EXPECT_EQ(entry.Documento(), "");
  EXPECT_EQ(entry.ValorPago(), Currency());
  EXPECT_EQ(entry.Data(), Variant(Date::FromCivil({2008, 7, 5, 9, 30, 0})));
  EXPECT_EQ(entry.DataReferencia(), Variant(0.0));
  EXPECT_EQ(entry.Historico(), "minúsculas");
  EXPECT_EQ(entry.SaldoConta(), Reais(1));
  EXPECT_EQ(entry.SaldoRecDesp(), Reais(2));
  EXPECT_EQ(entry.SaldoCentroCusto(), Currency());
  EXPECT_EQ(entry.SaldoParceiroComl(), Reais(4));
  EXPECT_EQ(entry.SaldoGlobal(), Reais(5));
  EXPECT_EQ(entry.IdUsuario(), 7);
  EXPECT_TRUE(entry.Estorno());
  EXPECT_FALSE(entry.Estornado());
  EXPECT_EQ(entry.Transferencia(), 2);
  EXPECT_EQ(entry.IdConcorrencia(), 3);
}

TEST(Entry, AFailedLoadKeepsWhatItHadRead) {
  OnAnotherThread([] {
    CLancamento entry = CompleteEntry();
    const Row row(With(StoredValues(), "Historico", Null()));
    const Erro erro = ErrorOf([&] { entry.CarregarDeRegistro(row); });
    EXPECT_EQ(erro.Numero(), 94);
    EXPECT_EQ(erro.Origem(), "Em CLancamento.CarregarDeRegistro");
    EXPECT_EQ(entry.DataId(), "20080705000001234");
    EXPECT_TRUE(entry.Estorno());
    EXPECT_EQ(entry.Historico(), "ALUGUEL");
    EXPECT_EQ(entry.Valor(), Reais(-10));
    EXPECT_EQ(entry.IdUsuario(), 1);
  });
  OnAnotherThread([] {
    const Row row(With(StoredValues(), "ValorPago", std::string("x")));
    ExpectErro(ErrorOf([&] { CLancamento().CarregarDeRegistro(row); }), TS_ERRO_LANCAMENTO, "Valor não numérico.",
               "Em CLancamento.CarregarDeRegistro");
  });
}

// All that an entry holds, in no particular order.
auto All(const CLancamento& e) {
  return std::make_tuple(e.Id(), e.CodConta(), e.CodRecDesp(), e.CodCentroCusto(), e.IdParceiroComl(), e.Documento(),
                         e.Valor(), e.ValorPago(), e.Data(), e.DataReferencia(), e.DataVencimento(), e.Historico(),
                         e.DataId(), e.SaldoConta(), e.SaldoRecDesp(), e.SaldoCentroCusto(), e.SaldoParceiroComl(),
                         e.SaldoGlobal(), e.IdUsuario(), e.Realizado(), e.Estorno(), e.Estornado(), e.Transferencia(),
                         e.IdConcorrencia());
}

TEST(Entry, ACopyHoldsAllAndPassesTheRulesAgain) {
  Row::Values values = StoredValues();
  for (const auto& [column, value] : Row::Values{{"CodCentroCusto", std::string("3.3")},
                                                 {"IdParceiroComl", std::int32_t{44}},
                                                 {"Documento", std::string("NF 5")},
                                                 {"ValorPago", Reais(6)},
                                                 {"DataReferencia", Date(39630)},
                                                 {"DataVencimento", Date(39640)},
                                                 {"SaldoCentroCusto", Reais(3)}}) {
    values = With(values, column, value);
  }
  CLancamento loaded;
  loaded.CarregarDeRegistro(Row(values));
  const CivilTime half{2008, 7, 5, 9, 30, 0};
  EXPECT_EQ(All(loaded), std::make_tuple(1234, std::string("1.1"), std::string("2"), std::string("3.3"), 44,
                                         std::string("NF 5"), Reais(-10), Reais(6), Variant(Date::FromCivil(half)),
                                         Variant(Date(39630)), Variant(Date(39640)), std::string("minúsculas"),
                                         std::string("20080705000001234"), Reais(1), Reais(2), Reais(3), Reais(4),
                                         Reais(5), 7, std::string("E"), true, false, std::uint8_t{2}, 3));
  const auto copy = loaded.Copiar();
  EXPECT_EQ(copy->Historico(), "MINÚSCULAS");
  CLancamento expected = loaded;
  expected.Historico("MINÚSCULAS");
  EXPECT_EQ(All(*copy), All(expected));
  copy->Historico("outro");
  EXPECT_EQ(loaded.Historico(), "minúsculas");

  OnAnotherThread([] {
    CLancamento broken;
    broken.CarregarDeRegistro(Row(With(StoredValues(), "CodConta", std::string(32, '1'))));
    ExpectErro(ErrorOf([&] { broken.Copiar(); }), TS_ERRO_LANCAMENTO,
               "Código de conta de capital não pode ter mais do que 31 caracteres.", "em CLancamento.CodConta");
  });
}

}  // namespace
