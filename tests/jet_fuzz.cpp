// Feeds random statements to the Jet front end and the embedded engine: walks of the grammar, some of them damaged.
// Usage: jet_fuzz SECONDS [SEED]. Every text must run or be refused with an engine's or a runtime error; an internal
// error (51) means that the compiler wrote SQL which the engine does not understand.
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "support/EmptyLedger.h"
#include "types/Erro.h"

namespace {

class Walk {
 public:
  explicit Walk(std::uint64_t seed) : random_(seed) {}

  std::string Statement() {
    depth_ = 0;
    std::string text;
    switch (Pick(12)) {
      case 0:
        text = Insert();
        break;
      case 1:
        text = "UPDATE Itens SET " + Column() + " = " + Value() + Chance(2, " WHERE " + Condition());
        break;
      case 2:
        text = "DELETE * FROM Movs WHERE " + Condition();
        break;
      case 3:
        text = Query() + " UNION " + Chance(2, "ALL ") + Query() + Chance(2, " ORDER BY 1");
        break;
      case 4:
        text = "UPDATE Itens AS I INNER JOIN Movs AS M ON (I.Id = M.IdItem AND " + Condition() +
               ") SET I.Preco = " + Value() + ", I.Nome = " + Value();
        break;
      case 5:
        text = "TRANSFORM Sum(Valor) SELECT IdItem FROM Movs GROUP BY IdItem PIVOT Tipo IN ('S', " + Value() + ")";
        break;
      default:
        text = Query();
        break;
    }
    return Pick(3) == 0 ? Damage(text) : text;
  }

 private:
  std::size_t Pick(std::size_t n) { return std::uniform_int_distribution<std::size_t>(0, n - 1)(random_); }
  std::string Chance(std::size_t oneIn, std::string text) { return Pick(oneIn) == 0 ? text : ""; }
  std::string Of(const std::vector<std::string>& words) { return words[Pick(words.size())]; }

  std::string Insert() {
    return "INSERT INTO Movs SELECT " + Value() + " AS Id, " + Value() + " AS IdItem, " + Value() + " AS Valor, " +
           Value() + " AS Tipo" + Chance(2, " FROM Itens" + Chance(2, " WHERE " + Condition()));
  }

  std::string Query() {
    std::string text =
        "SELECT " + Chance(6, "DISTINCT ") + Chance(6, "TOP " + std::to_string(Pick(5)) + Chance(3, " PERCENT") + " ");
    const bool grouped = Pick(5) == 0;
    if (grouped) {
      text +=
          "Grupo, " + Of({"Count(*)", "Sum(Preco)", "Avg(Qtd)", "Max(Nome)", "First(Desde)", "Min(" + Value() + ")"});
    } else {
      text += Chance(3, "*, ") + Value() + Chance(2, " AS r") + Chance(2, ", " + Value());
    }
    text += " FROM " + Sources() + Chance(2, " WHERE " + Condition());
    if (grouped) text += " GROUP BY Grupo" + Chance(2, " HAVING Count(*) > " + Value());
    return text + Chance(2, " ORDER BY " + Value() + Chance(2, " DESC"));
  }

  std::string Sources() {
    return Of({"Itens", "Itens AS I, Grupos", "Itens AS I INNER JOIN Grupos AS G ON I.Grupo = G.Sigla", "Movs",
               "Vazia, Grupos",
               "(Movs AS M INNER JOIN Itens AS I ON M.IdItem = I.Id) LEFT JOIN Grupos AS G ON I.Grupo = G.Sigla",
               "Grupos AS G RIGHT JOIN (Itens AS I INNER JOIN Movs AS M ON M.IdItem = I.Id) ON I.Grupo = G.Sigla",
               "(SELECT Id, Grupo, Preco AS Valor FROM Itens WHERE " + Shallow() + ") AS x"});
  }

  std::string Shallow() { return Pick(2) == 0 ? "Id > 3" : "Grupo = 'FER'"; }

  std::string Column() {
    return Of({"Id", "Nome", "Grupo", "Preco", "Qtd", "Peso", "Desde", "Ativo", "Obs", "Codigo", "Valor", "Dia", "Tipo",
               "Sigla", "Teto", "I.Id", "G.Titulo", "[Valor Final]", "Nada"});
  }

  std::string Literal() {
    return Of({"0", "1", "-1", "2147483647", "12.5", "-0.0001", "922337203685477.5807", "1E10", "'FER'", "''", "'a*'",
               "'[a-c]?#'", "'ç'", "\"x\"", "#02/29/2008#", "#12/31/1999 23:59:59#", "Null", "True", "False"});
  }

  std::string Value() {
    if (++depth_ > 12) return Literal();
    switch (Pick(14)) {
      case 0:
      case 1:
      case 2:
        return Literal();
      case 3:
      case 4:
      case 5:
      case 6:
        return Column();
      case 7:
        return Value() + Of({" + ", " - ", " * ", " / ", " \\ ", " MOD ", " ^ ", " & ", " - -"}) + Value();
      case 8:
        return "(" + Value() + ")";
      case 9:
        return "IIF(" + Condition() + ", " + Value() + ", " + Value() + ")";
      case 10:
        return Of({"Len", "UCase", "Abs", "Int", "Fix", "Year", "CStr", "CLng", "CCur", "CDate", "Val", "Trim", "Nz",
                   "Round", "Sgn"}) +
               "(" + Value() + ")";
      case 11:
        return Of({"Left", "Mid", "InStr", "Format", "DateAdd", "DateDiff", "Nz", "Replace", "DateSerial"}) + "(" +
               Value() + ", " + Value() + Chance(2, ", " + Value()) + ")";
      case 12:
        return "-" + Value();
      default:
        return "(SELECT " + Of({"Max(Id)", "Id", "Sum(Preco)", "Nome"}) + " FROM Itens WHERE " + Shallow() + ")";
    }
  }

  std::string Condition() {
    if (++depth_ > 12) return "Id = 1";
    switch (Pick(9)) {
      case 0:
        return Value() + " LIKE " + Value();
      case 1:
        return Value() + " LIKE " + Column() + " & '*'";
      case 2:
        return "NOT " + Value() + " Is NULL AND " + Condition();
      case 3:
        return "(" + Condition() + Of({" AND ", " OR ", " XOR ", " EQV ", " IMP "}) + Condition() + ")";
      case 4:
        return Value() + " BETWEEN " + Value() + " AND " + Value();
      case 5:
        return Value() + " IN (" + Value() + ", " + Value() + ")";
      case 6:
        return Value() + " IN (SELECT Id FROM Itens WHERE " + Shallow() + ")";
      case 7:
        return Value() + Of({" > ANY ", " = ALL ", " <> SOME "}) + "(SELECT Preco FROM Itens)";
      default:
        return Value() + Of({" = ", " <> ", " < ", " >= "}) + Value();
    }
  }

  std::string Damage(std::string text) {
    static constexpr std::string_view kBytes = "'\"#[]()&-.,;*^\\ \t\x01\xc3\xff%SELECT0";
    for (std::size_t i = Pick(4) + 1; i > 0 && !text.empty(); --i) {
      const std::size_t at = Pick(text.size());
      switch (Pick(4)) {
        case 0:
          text.erase(at, Pick(8) + 1);
          break;
        case 1:
          text.insert(at, 1, kBytes[Pick(kBytes.size())]);
          break;
        case 2:
          text[at] = kBytes[Pick(kBytes.size())];
          break;
        default:
          text.insert(at, text.substr(Pick(text.size()), Pick(12)));
          break;
      }
    }
    return text;
  }

  std::mt19937_64 random_;
  std::size_t depth_ = 0;
};

void Fill(tsv::db::Database& database) {
  database.Execute(
      "CREATE TABLE Itens (Id LONG PRIMARY KEY, Nome TEXT(30), Grupo TEXT(10), Preco CURRENCY, Qtd LONG, Peso DOUBLE, "
      "Desde DATETIME, Ativo YESNO, Obs TEXT(50), Codigo TEXT(12))");
  database.Execute("CREATE TABLE Grupos (Sigla TEXT(10) PRIMARY KEY, Titulo TEXT(30), Teto CURRENCY)");
  database.Execute("CREATE TABLE Movs (Id LONG, IdItem LONG, Dia DATETIME, Tipo TEXT(1), Valor CURRENCY)");
  database.Execute("CREATE TABLE Vazia (Id LONG, Valor CURRENCY)");
  for (int i = 1; i <= 6; ++i) {
    const std::string n = std::to_string(i);
    database.Execute("INSERT INTO Itens VALUES (" + n + ", 'Item " + n + "', '" + (i % 2 == 0 ? "FER" : "tin") + "', " +
                     n + ".25, " + n + ", 0.5, #0" + n + "/15/2008#, " + (i % 3 == 0 ? "True" : "False") +
                     ", Null, 'A-" + n + "*')");
    database.Execute("INSERT INTO Movs VALUES (" + n + ", " + n + ", #01/0" + n + "/2008#, 'S', -" + n + ".5)");
  }
  database.Execute("INSERT INTO Grupos VALUES ('FER', 'Ferragens', 50)");
  database.Execute("INSERT INTO Grupos VALUES ('TIN', 'Tintas', Null)");
}

}  // namespace

int main(int argc, char** argv) {
  using Clock = std::chrono::steady_clock;
  const int seconds = argc > 1 ? std::atoi(argv[1]) : 2;
  const std::uint64_t seed = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : std::random_device{}();
  std::cout << "seed " << seed << std::endl;
  Walk walk(seed);
  const tsv::test::EmptyLedger ledger;
  const auto database = ledger.Open();
  Fill(*database);
  std::map<std::int32_t, std::uint64_t> outcomes;
  std::uint64_t slow = 0;
  std::uint64_t broken = 0;
  const auto end = Clock::now() + std::chrono::seconds(seconds);
  while (Clock::now() < end) {
    const std::string sql = walk.Statement();
    const auto began = Clock::now();
    std::int32_t number = 0;
    try {
      if (sql.starts_with("SELECT") || sql.starts_with("TRANSFORM")) {
        database->OpenRecordset(sql, tsv::db::dbOpenSnapshot, tsv::db::dbReadOnly);
      } else {
        database->Execute(sql, tsv::db::dbFailOnError);
      }
    } catch (const tsv::Erro& erro) {
      number = erro.Numero();
      if (number == static_cast<std::int32_t>(tsv::RuntimeError::Internal) && ++broken <= 20)
        std::cerr << "broken: " << erro.Descricao() << "\n  " << sql << std::endl;
    }
    ++outcomes[number];
    if (Clock::now() - began > std::chrono::seconds(2) && ++slow <= 5) std::cerr << "slow: " << sql << std::endl;
  }
  for (const auto& [number, count] : outcomes)
    std::cout << (number == 0 ? "ran" : "error " + std::to_string(number)) << ": " << count << "\n";
  std::cout << broken << " broken, " << slow << " slow" << std::endl;
  return broken == 0 && slow == 0 && outcomes[0] > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
