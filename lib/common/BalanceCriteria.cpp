#include "common/BalanceCriteria.h"

#include <optional>

#include "common/Errors.h"

namespace tsv::Module1 {

namespace {

// One of the two entries as a balance sees it.
struct Side {
  const Literal& key;
  const Literal& code;
  const Literal& amount;
  bool has;  // a code of that kind
};

// How a balance is named and tested.
struct Column {
  Fragment assignment;
  Fragment test;        // of the row, after the entry's code
  Fragment guard = "";  // leaves rows without such a code alone
  Fragment onlyNewEnd = ", 0) ";

  bool IsGuarded() const noexcept { return !guard.text.empty(); }
};

class Criteria {
 public:
  Criteria(const Column& column, const Side& novo, const Side& antigo) : column_(column), novo_(novo), antigo_(antigo) {
    text_ << column.assignment;
  }

  Statement Later();
  Statement Earlier();
  Statement Same();

 private:
  enum class Form { Same, Changed, OnlyNew, OnlyOld, Nothing };

  Form Which() const {
    if (!novo_.has) return antigo_.has ? Form::OnlyOld : Form::Nothing;
    if (!antigo_.has) return Form::OnlyNew;
    return novo_.code.Text() == antigo_.code.Text() ? Form::Same : Form::Changed;
  }

  // The pieces that all texts are made of: whether the row holds entries of one side, and the amounts it then takes.
  Statement Holds(const Side& side) const { return Statement() << side.code << column_.test; }
  Statement Difference() const { return Statement() << novo_.amount << " - " << antigo_.amount; }
  Statement Without() const { return Statement() << "-1 * " << antigo_.amount; }

  Statement Guarded(Fragment opening) const { return Statement() << opening << column_.guard; }
  Statement HoldsEither(Fragment opening) const {
    Statement text = Guarded(opening);
    if (column_.IsGuarded()) text << "(";
    text << Holds(antigo_) << " OR " << Holds(novo_);
    if (column_.IsGuarded()) text << ")";
    return text;
  }

  const Column& column_;
  const Side& novo_;
  const Side& antigo_;
  Statement text_;
};

// Rows between the two places lose the old amount, rows after the new place take the difference.
Statement Criteria::Later() {
  switch (Which()) {
    case Form::Same:
      text_ << Guarded("IIF (") << Holds(novo_) << ",IIF (DataId < " << novo_.key << ",IIF (" << Holds(antigo_) << ", "
            << Without() << ", 0),IIF (" << Holds(antigo_) << ", " << Difference() << ",0)),0) ";
      break;
    case Form::Changed:
      text_ << HoldsEither("IIF (") << ",IIF (DataId > " << novo_.key << ",IIF(" << Holds(novo_) << ", IIF(NOT "
            << Holds(antigo_) << "," << novo_.amount << "," << Difference() << "),IIF(" << Holds(antigo_) << ", "
            << Without() << ",0)),IIF(" << Holds(antigo_) << ", " << Without() << ",0)),0) ";
      break;
    case Form::OnlyNew:
      text_ << Guarded("IIF (") << Holds(novo_) << " AND DataId > " << novo_.key << "," << novo_.amount << ",0) ";
      break;
    case Form::OnlyOld:
      text_ << Guarded("IIF (") << Holds(antigo_) << ", - " << novo_.amount << ",0) ";
      break;
    case Form::Nothing:
      return {};
  }
  return text_;
}

// Rows between the two places gain the new amount, rows after the old place take the difference.
Statement Criteria::Earlier() {
  switch (Which()) {
    case Form::Same:
      text_ << Guarded("IIF(") << Holds(novo_) << ", IIF (DataId > " << novo_.key << " And DataId < " << antigo_.key
            << ", IIF(" << Holds(novo_) << ", " << novo_.amount << ", 0), IIF(DataId > " << antigo_.key << ",IIF("
            << Holds(antigo_) << ", " << Difference() << ", 0),0)),0) ";
      break;
    case Form::Changed:
      text_ << HoldsEither("IIF(") << ", IIF (DataId > " << novo_.key << " And DataId < " << antigo_.key << ", IIF("
            << Holds(novo_) << ", " << novo_.amount << ", 0),  IIF(" << Holds(antigo_) << ", IIF(NOT " << Holds(novo_)
            << ", " << Without() << "," << Difference() << "),IIF(" << Holds(novo_) << ", " << novo_.amount
            << ", 0))), 0) ";
      break;
    case Form::OnlyNew:
      text_ << Guarded("IIF(") << Holds(novo_) << ", " << novo_.amount << column_.onlyNewEnd;
      break;
    case Form::OnlyOld:
      text_ << Guarded("IIF(") << Holds(antigo_) << " AND DataId > " << antigo_.key << ", " << Without() << ", 0) ";
      break;
    case Form::Nothing:
      return {};
  }
  return text_;
}

// All rows take the difference.
Statement Criteria::Same() {
  switch (Which()) {
    case Form::Same:
      text_ << Guarded("IIF (") << Holds(novo_) << ", " << Difference() << ",0) ";
      break;
    case Form::Changed:
      text_ << Guarded("IIF (") << Holds(novo_) << ", IIF(NOT " << Holds(antigo_) << "," << novo_.amount << ","
            << Difference() << "), " << Guarded("IIF (") << Holds(antigo_) << ", " << Without() << ", 0)) ";
      break;
    case Form::OnlyNew:
      text_ << Guarded("IIF (") << Holds(novo_) << ", " << novo_.amount << ",0) ";
      break;
    case Form::OnlyOld:
      text_ << Guarded("IIF (") << Holds(antigo_) << ", " << Without() << ", 0) ";
      break;
    case Form::Nothing:
      return {};
  }
  return text_;
}

struct Literals {
  explicit Literals(const Efeito& efeito)
      : DataId(TextOrNull(efeito.DataId)),
        CodConta(TextOrNull(efeito.Classe.CodConta)),
        CodRecDesp(TextOrNull(efeito.Classe.CodRecDesp)),
        CodCentroCusto(TextOrNull(efeito.Classe.CodCentroCusto)),
        IdParceiroComl(NumberOrNull(efeito.Classe.IdParceiroComl)),
        Valor(AmountLiteral(efeito.Valor)) {}

  Side Conta() const { return {DataId, CodConta, Valor, true}; }
  Side RecDesp() const { return {DataId, CodRecDesp, Valor, true}; }
  Side CentroCusto() const { return {DataId, CodCentroCusto, Valor, !CodCentroCusto.IsNull()}; }
  Side Parceiro() const { return {DataId, IdParceiroComl, Valor, !IdParceiroComl.IsNull()}; }

  Literal DataId, CodConta, CodRecDesp, CodCentroCusto, IdParceiroComl, Valor;
};

constexpr Column kConta = {.assignment = "SaldoConta = SaldoConta + ", .test = " LIKE CodConta & '*'"};
constexpr Column kRecDesp = {.assignment = ", SaldoRecDesp = SaldoRecDesp + ", .test = " LIKE CodRecDesp & '*'"};
constexpr Column kCentroCusto = {.assignment = ", SaldoCentroCusto = SaldoCentroCusto + ",
                                 .test = " LIKE CodCentroCusto & '*'",
                                 .guard = "Not CodCentroCusto Is NULL AND "};
constexpr Column kParceiro = {.assignment = ", SaldoParceiroComl = SaldoParceiroComl + ",
                              .test = " = IdParceiroComl",
                              .guard = "NOT IdParceiroComl IS NULL AND ",
                              .onlyNewEnd = ",0) "};
constexpr Column kParceiroNoMesmoDia = {
    .assignment = kParceiro.assignment, .test = kParceiro.test, .guard = "Not IdParceiroComl Is NULL AND "};

Statement Assignments(Statement (Criteria::*form)(), const Literals& novo, const Literals& antigo,
                      const Column& parceiro) {
  const auto of = [&](const Column& column, const Side& n, const Side& a) { return (Criteria(column, n, a).*form)(); };
  return Statement() << of(kConta, novo.Conta(), antigo.Conta()) << of(kRecDesp, novo.RecDesp(), antigo.RecDesp())
                     << of(kCentroCusto, novo.CentroCusto(), antigo.CentroCusto())
                     << of(parceiro, novo.Parceiro(), antigo.Parceiro()) << ", SaldoGlobal = SaldoGlobal + ";
}

}  // namespace

Statement MontaCriteriosParaAtualizarSaldos(const Efeito& novo, const Efeito& antigo) {
  return UnderHandler("em Tesovia.MontaCriteriosParaAtualizarSaldos", [&] {
    const Literals n(novo);
    const Literals a(antigo);
    const std::int32_t days = novo.Data.DayNumber() - antigo.Data.DayNumber();
    if (days > 0) {
      // The minus before an old amount that is negative itself makes two, which negate twice.
      return Assignments(&Criteria::Later, n, a, kParceiro)
             << "IIF (DataId > " << a.DataId << " And DataId < " << n.DataId << ",  -" << a.Valor << ", IIF (DataId > "
             << n.DataId << "," << n.Valor << " - " << a.Valor << ", 0)) ";
    }
    if (days < 0) {
      return Assignments(&Criteria::Earlier, n, a, kParceiro)
             << "IIF (DataId > " << n.DataId << " And DataId < " << a.DataId << ", " << n.Valor << ", IIF(DataId > "
             << a.DataId << ", " << n.Valor << " - " << a.Valor << ",0)) ";
    }
    return Assignments(&Criteria::Same, n, a, kParceiroNoMesmoDia) << n.Valor << " - " << a.Valor;
  });
}

}  // namespace tsv::Module1
