#include <gtest/gtest.h>

#include "common/BalanceCriteria.h"
#include "db/EngineError.h"
#include "support/Ledger.h"
#include "support/Statements.h"

using namespace tsv;
using namespace tsv::test;
using Module1::Classificacao;
using Module1::Efeito;
using Module1::MontaCriteriosParaAtualizarSaldos;

namespace {

enum Form { kSame, kChanged, kOnlyNew, kOnlyOld, kNone };  // of the two entries' codes

// Whether rows at the earlier key, between the keys, at the later key, and after it take the new amount (+) and give
// the old one (-).
struct Reach {
  const char* novo;
  const char* antigo;
};

struct Move {
  const char* name;
  int daysOfOld, daysOfNew;
  Reach forms[4];
  Reach global;
};

const Move kMoves[] = {
    {"later", 1, 10, {{"..++", "----"}, {"...+", "----"}, {"...+", "...."}, {"....", "----"}}, {"...+", ".-.-"}},
    {"earlier", 10, 1, {{".+.+", "...-"}, {"++++", "-.--"}, {"++++", "...."}, {"....", "...-"}}, {".+.+", "...-"}},
    {"same day", 1, 1, {{"++++", "----"}, {"++++", "----"}, {"++++", "...."}, {"....", "----"}}, {"++++", "----"}},
};

// What the rows are classified by: codes of both entries of the changed form, of one each, and of none.
const Classificacao kRows[] = {
    {"1", "0", "1", 1}, {"1.1", "001", "1.1", 1}, {"1.2", "02", "1.2", 2}, {"B", "2", "", 0}};

Efeito Side(bool isNew, Form form, const Move& move, Currency amount) {
  const Date date = Day(2008, 7, isNew ? move.daysOfNew : move.daysOfOld);
  Efeito side{Module1::MontarDataId(date, 50), date, kRows[1], amount};
  if (!isNew && form == kChanged) side.Classe = kRows[2];
  if (form == kNone || form == (isNew ? kOnlyOld : kOnlyNew)) {
    side.Classe.CodCentroCusto.clear();
    side.Classe.IdParceiroComl = 0;
  }
  return side;
}

// Whether the balances of a row hold an entry: of account, type, cost centre, partner and all.
std::array<bool, 5> Holds(const Classificacao& row, const Classificacao& entry) {
  return {entry.CodConta.starts_with(row.CodConta), entry.CodRecDesp.starts_with(row.CodRecDesp),
          !row.CodCentroCusto.empty() && entry.CodCentroCusto.starts_with(row.CodCentroCusto),
          row.IdParceiroComl != 0 && entry.IdParceiroComl == row.IdParceiroComl, true};
}

class CriteriaTest : public LedgerTest {
 protected:
  void Run(const std::string& sql) { CurrentSession().BancoDeDados->Execute(sql, db::dbFailOnError); }
};

TEST_F(CriteriaTest, EachFormHasItsTextAndItsEffect) {
  Run("INSERT INTO TiposMovimentacoes (Id,Codigo,Inativo,Excluido) VALUES (90,'02',False,False)");
  Run("INSERT INTO CentrosDeCusto (Id,Codigo,Inativo,Excluido) VALUES (90,'1.2',False,False)");
  const std::string keys[] = {"'20080701000000050'", "'20080705000000001'", "'20080710000000050'",
                              "'20080710000000051'"};
  for (const std::string& key : keys) {
    Run("INSERT INTO Lancamentos (Id,CodConta,CodRecDesp,Valor,Historico,DataId,SaldoConta,SaldoRecDesp,SaldoGlobal,"
        "IdUsuario) VALUES (" +
        std::to_string(&key - keys) + ",'1','0',1,'X'," + key + ",0,0,0,7)");
  }
  for (const Move& move : kMoves) {
    const std::vector<std::string> texts = Statements(std::string("assignments, ") + move.name);
    ASSERT_EQ(texts.size(), 5u);
    for (const Form form : {kSame, kChanged, kOnlyNew, kOnlyOld, kNone}) {
      const Efeito n = Side(true, form, move, Cents(-3050));
      const Efeito a = Side(false, form, move, Cents(-10000));
      ASSERT_EQ(MontaCriteriosParaAtualizarSaldos(n, a).Text(), texts[form]);
      for (const Classificacao& row : kRows) {
        SCOPED_TRACE(texts[form] + " on rows of account " + row.CodConta);
        Run("UPDATE Lancamentos SET CodConta='" + row.CodConta + "', CodRecDesp='" + row.CodRecDesp +
            "', CodCentroCusto=" + (row.CodCentroCusto.empty() ? "NULL" : "'" + row.CodCentroCusto + "'") +
            ", IdParceiroComl=" + (row.IdParceiroComl == 0 ? "NULL" : std::to_string(row.IdParceiroComl)) +
            ", SaldoConta=0, SaldoRecDesp=0, SaldoCentroCusto=0, SaldoParceiroComl=0, SaldoGlobal=0");
        // From the earlier key on, so that the rows at the keys show on which side they fall.
        Run("UPDATE Lancamentos Set " + texts[form] + " where DataId >= " + keys[0]);

        const Reach& ofCode = move.forms[form == kChanged ? kChanged : kSame];
        const Reach& ofOption = move.forms[form == kNone ? kSame : form];
        const Reach* reaches[] = {&ofCode, &ofCode, &ofOption, &ofOption, &move.global};
        const auto holdsNew = Holds(row, n.Classe);
        const auto holdsOld = Holds(row, a.Classe);
        const std::vector<Entry> rows = ReadEntries(*CurrentSession().BancoDeDados);
        for (std::size_t i = 0; i < rows.size(); ++i) {
          for (std::size_t k = 0; k < 5; ++k) {
            // An entry that moves later and loses its centre or partner takes its new amount away with it.
            const bool isOption = k == 2 || k == 3;
            const Currency lost = isOption && form == kOnlyOld && move.daysOfNew > move.daysOfOld ? n.Valor : a.Valor;
            Currency expected;
            if (holdsNew[k] && reaches[k]->novo[i] == '+') expected += n.Valor;
            if (holdsOld[k] && reaches[k]->antigo[i] == '-') expected -= lost;
            ASSERT_EQ(rows[i].balances[k], expected) << "row " << i << ", balance " << k;
          }
        }
      }
    }
  }
}

TEST_F(CriteriaTest, AnotherHourOfTheSameDayIsNoMove) {
  const Efeito antigo{"20080705000000001", Date::FromCivil({2008, 7, 5, 23, 59, 0}), {"1.1", "0", "", 0}, Cents(10000)};
  Efeito novo = antigo;
  novo.Data = Day(2008, 7, 5);
  novo.Valor = Cents(8000);
  EXPECT_EQ(MontaCriteriosParaAtualizarSaldos(novo, antigo).Text(),
            "SaldoConta = SaldoConta + IIF ('1.1' LIKE CodConta & '*', 80.00 - 100.00,0) "
            ", SaldoRecDesp = SaldoRecDesp + IIF ('0' LIKE CodRecDesp & '*', 80.00 - 100.00,0) "
            ", SaldoGlobal = SaldoGlobal + 80.00 - 100.00");
  for (const auto& [amount, text] : {std::pair{"1234,5", "+ 1234.50 - 100.00"}, {"-0,005", "+ -0.01 - 100.00"}}) {
    novo.Valor = *Currency::FromText(amount);
    EXPECT_TRUE(MontaCriteriosParaAtualizarSaldos(novo, antigo).Text().ends_with(text)) << text;
  }
  novo.Classe.CodConta = "1'1";
  ExpectErro(ErrorOf([&] { MontaCriteriosParaAtualizarSaldos(novo, antigo); }), 3075,
             db::TextOf(db::EngineError::SyntaxInExpression, ""), "em Tesovia.MontaCriteriosParaAtualizarSaldos");
}

}  // namespace
