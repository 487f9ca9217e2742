#include <fcntl.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

// The built command, driven as a user or a script drives it: arguments and files in; texts and exit codes out.
namespace {

namespace fs = std::filesystem;
using ::testing::Test;

struct Outcome {
  int code = -1;
  std::string out;
  std::string err;
};

std::ostream& operator<<(std::ostream& stream, const Outcome& outcome) {
  return stream << "exit " << outcome.code << "\n--- out\n" << outcome.out << "--- err\n" << outcome.err;
}

std::string ContentOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

bool Contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

class CliTest : public Test {
 protected:
  CliTest() {
    std::string pattern = (fs::temp_directory_path() / "tesovia-XXXXXX").string();
    folder_ = mkdtemp(pattern.data());
    environment_ = {{"TESOVIA_ARQUIVO", (folder_ / "livro.tesovia").string()},
                    {"TESOVIA_USUARIO", "ana"},
                    {"TESOVIA_SENHA", "segredo"}};
  }
  ~CliTest() override { fs::remove_all(folder_); }

  Outcome Run(const std::vector<std::string>& arguments) { return Await(Start(arguments)); }

  // A command that runs beside others writes its output under names of its own.
  Outcome Await(pid_t child, const std::string& suffix = {}) {
    int status = 0;
    waitpid(child, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ContentOf(folder_ / ("out" + suffix)),
            ContentOf(folder_ / ("err" + suffix))};
  }

  pid_t Start(const std::vector<std::string>& arguments, const std::string& suffix = {},
              const std::string& input = "/dev/null") {
    const fs::path out = folder_ / ("out" + suffix);
    const fs::path err = folder_ / ("err" + suffix);
    std::vector<char*> argv{const_cast<char*>("tesovia")};
    for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    const pid_t child = fork();
    if (child == 0) {
      setsid();  // no terminal: a password that is asked for fails instead of hanging the test
      Redirect(input, O_RDONLY | O_NOCTTY, STDIN_FILENO);
      Redirect(out, O_WRONLY | O_CREAT | O_TRUNC, STDOUT_FILENO);
      Redirect(err, O_WRONLY | O_CREAT | O_TRUNC, STDERR_FILENO);
      for (const char* name : {"TESOVIA_ARQUIVO", "TESOVIA_USUARIO", "TESOVIA_SENHA", "TESOVIA_SENHA_NOVA"}) {
        unsetenv(name);
      }
      for (const auto& [name, value] : environment_) setenv(name.c_str(), value.c_str(), 1);
      execv(TSV_TESOVIA, argv.data());
      _exit(127);
    }
    return child;
  }

  void ExpectDone(const std::vector<std::string>& arguments) {
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.code, 0) << arguments[0] << ' ' << outcome;
  }

  // A refusal tells why on standard error and says nothing on standard output.
  void ExpectRefused(int code, const std::string& reason, const std::vector<std::string>& arguments) {
    EXPECT_EQ(ExpectFailure(code, reason, arguments).out, "");
  }

  Outcome ExpectFailure(int code, const std::string& reason, const std::vector<std::string>& arguments) {
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.code, code) << outcome;
    EXPECT_TRUE(Contains(outcome.err, reason)) << "expected: " << reason << '\n' << outcome;
    return outcome;
  }

  void MakeCompany() {
    ExpectDone({"criar", "--nome", "Ana Souza"});
    ExpectDone({"cadastrar", "conta", "1", "CAIXA"});
    ExpectDone({"cadastrar", "conta", "1.1", "COFRE"});
    ExpectDone({"cadastrar", "conta", "2", "BANCO"});
    ExpectDone({"cadastrar", "receita-despesa", "R", "RECEITAS", "--tipo", "entrada"});
    ExpectDone({"cadastrar", "receita-despesa", "D", "DESPESAS", "--tipo", "saida"});
    ExpectDone({"cadastrar", "receita-despesa", "A", "AJUSTES"});
    ExpectDone({"cadastrar", "centro", "L", "LOJA"});
    ExpectDone({"cadastrar", "parceiro", "MOINHO AZUL", "--filial", "CENTRO"});
  }

  static std::vector<std::string> Posting(const std::string& date, const std::string& amount,
                                          const std::string& account, const std::string& type,
                                          const std::vector<std::string>& rest = {}) {
    std::vector<std::string> arguments{"lancar", "--data",      date,        "--conta", account, "--receita-despesa",
                                       type,     "--historico", "Movimento", "--valor", amount};
    arguments.insert(arguments.end(), rest.begin(), rest.end());
    return arguments;
  }

  std::string WriteFile(const std::string& name, const std::string& content) {
    const fs::path path = folder_ / name;
    std::ofstream(path, std::ios::binary) << content;
    return path.string();
  }

  nlohmann::json Rows(const std::string& sql) {
    const Outcome outcome = Run({"consultar", sql, "--json"});
    EXPECT_EQ(outcome.code, 0) << outcome;
    return nlohmann::json::parse(outcome.out, nullptr, false);
  }

  // These fields of one entry, as the statement writes them.
  std::string Fields(int id, const std::vector<std::string>& names) {
    nlohmann::json values;
    for (const auto& row : nlohmann::json::parse(Run({"extrato", "--json"}).out, nullptr, false)) {
      if (row["Id"] != id) continue;
      for (const std::string& field : names) values.push_back(row.value(field, nlohmann::json("?")));
    }
    return values.dump();
  }

  // Changes the file behind the ledger's back.
  void Tamper(const std::string& sql) {
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open(environment_["TESOVIA_ARQUIVO"].c_str(), &database), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(database);
    EXPECT_EQ(sqlite3_changes(database), 1);
    sqlite3_close(database);
  }

  fs::path folder_;
  std::map<std::string, std::string> environment_;

 private:
  static void Redirect(const fs::path& path, int flags, int descriptor) {
    dup2(open(path.c_str(), flags, 0600), descriptor);
  }
};

TEST_F(CliTest, KeepsTheBooksOfASmallCompany) {
  MakeCompany();
  ExpectDone(Posting("01/07/2026", "1.000,00", "1", "R"));
  ExpectDone(Posting("2026-07-03", "0,10", "1.1", "R", {"--centro", "L", "--parceiro", "1", "--documento", "NF 1"}));
  ExpectDone(Posting("03/07/2026", "-250,5", "2", "D"));
  const Outcome backDated = Run(Posting("02/07/2026", "-0,20", "1.1", "D"));
  EXPECT_EQ(backDated.code, 0) << backDated;
  EXPECT_EQ(backDated.out,
            "Lançamento 4 de 02/07/2026 gravado. Depois dele, saldo da conta 1.1: -0,20; saldo global: 999,80.\n");

  const auto rows = nlohmann::json::parse(Run({"extrato", "--json"}).out);
  ASSERT_EQ(rows.size(), 4u);
  EXPECT_EQ(rows[2]["Id"], 2);
  EXPECT_EQ(rows[2]["Data"], "2026-07-03");
  EXPECT_EQ(rows[2]["Historico"], "MOVIMENTO");
  EXPECT_EQ(rows[2]["SaldoConta"], "-0.10");
  EXPECT_EQ(rows[2]["SaldoRecDesp"], "1000.10");
  EXPECT_EQ(rows[2]["SaldoCentroCusto"], "0.10");
  EXPECT_EQ(rows[2]["SaldoParceiroComl"], "0.10");
  EXPECT_EQ(rows[2]["SaldoGlobal"], "999.90");
  EXPECT_EQ(rows[3]["SaldoCentroCusto"], nullptr);
  EXPECT_EQ(rows[3]["SaldoGlobal"], "749.40");

  const Outcome table = Run({"extrato"});
  EXPECT_TRUE(Contains(table.out, "1.000,00")) << table;
  EXPECT_TRUE(Contains(table.out, "4 lançamentos; entradas 1.000,10; saídas -250,70.")) << table;

  const Outcome journal = Run({"diario", "--csv", "--lancamento", "2"});
  EXPECT_TRUE(Contains(journal.out, ";Ana Souza;inclusão;2;03/07/2026;1.1;COFRE;R;RECEITAS;L;MOINHO AZUL;NF 1;"))
      << journal;

  const Outcome check = Run({"verificar"});
  EXPECT_EQ(check.code, 0) << check;
  EXPECT_TRUE(Contains(check.out, "Conferidos os cinco saldos de 4 lançamentos: nenhuma diferença.")) << check;
  EXPECT_TRUE(Contains(check.out, "Não se confere")) << check;
}

TEST_F(CliTest, StatementShowsOnlyWhatIsAskedFor) {
  MakeCompany();
  ExpectDone(Posting("01/07/2026", "1,00", "1", "A"));
  ExpectDone(Posting("02/07/2026", "2,00", "1.1", "A"));
  ExpectDone(Posting("03/07/2026", "3,00", "2", "A"));
  const auto ids = [this](std::vector<std::string> filters) {
    filters.insert(filters.begin(), {"extrato", "--json"});
    const auto rows = nlohmann::json::parse(Run(filters).out, nullptr, false);
    std::vector<int> found;
    for (const auto& row : rows) found.push_back(row["Id"]);
    return found;
  };
  EXPECT_EQ(ids({"--de", "02/07/2026"}), (std::vector{2, 3}));
  EXPECT_EQ(ids({"--ate", "2026-07-02"}), (std::vector{1, 2}));
  EXPECT_EQ(ids({"--de", "02/07/2026", "--ate", "02/07/2026"}), (std::vector{2}));
  EXPECT_EQ(ids({"--conta", "1"}), (std::vector{1, 2}));
  EXPECT_EQ(ids({"--situacao", "aberto"}), (std::vector{1, 2, 3}));
  EXPECT_EQ(ids({"--situacao", "realizado"}), std::vector<int>());
  ExpectRefused(1, "Código '1*'", {"extrato", "--conta", "1*"});
  ExpectRefused(2, "--csv não vale com --json", {"extrato", "--csv", "--json"});
}

TEST_F(CliTest, TellsWhyAPostingIsRefused) {
  MakeCompany();
  ExpectRefused(1, "está especificada para aceitar apenas lançamentos de entrada",
                Posting("01/07/2026", "-1", "1", "R"));
  ExpectRefused(1, "Receita/despesa informada para o lançamento não existe.", Posting("01/07/2026", "1", "1", "X"));
  ExpectRefused(1, "Apóstrofos não são permitidos", Posting("01/07/2026", "1", "1", "R", {"--documento", "D'1"}));
  ExpectRefused(2, "duas casas decimais", Posting("01/07/2026", "1,005", "1", "R"));
  ExpectRefused(2, "Valor inválido 'abc'", Posting("01/07/2026", "abc", "1", "R"));
  ExpectRefused(2, "grande demais", Posting("01/07/2026", "922337203685478", "1", "R"));
  ExpectRefused(2, "Data inválida '31/06/2026'", Posting("31/06/2026", "1", "1", "R"));
  ExpectRefused(2, "Data inválida '12:00'", Posting("12:00", "1", "1", "R"));
  ExpectRefused(2, "Faltando informar --valor.", {"lancar", "--conta", "1"});
  ExpectRefused(2, "Número inválido '1,5'", Posting("01/07/2026", "1", "1", "R", {"--parceiro", "1,5"}));

  const Outcome detailed = Run(Posting("01/07/2026", "1", "1", "X", {"--detalhes"}));
  EXPECT_TRUE(Contains(detailed.err, "Número: -2147211504 (0x80042710); origem: 'em Tesovia.FazerLancamentoTS '"))
      << detailed;

  ExpectDone({"desativar", "conta", "1"});
  const Outcome box = Run(Posting("01/07/2026", "1", "1", "R"));
  EXPECT_EQ(box.code, 1);
  EXPECT_EQ(
      box.err,
      "Não foi possível incluir o lançamento.\nPossível causa: a conta, receita/despesa, centro de custo/lucro ou "
      "cliente/fornecedor foi desativado.\nConta '1' está desativada.\n");
  ExpectDone({"ativar", "conta", "1"});
  ExpectDone(Posting("01/07/2026", "1", "1", "R"));
}

TEST_F(CliTest, SettlesReversesAndDeletesEntries) {
  MakeCompany();
  ExpectDone(Posting("01/07/2026", "1.000,00", "1", "R"));
  ExpectDone(Posting("02/07/2026", "-400,00", "1.1", "D", {"--centro", "L", "--parceiro", "1"}));
  ExpectDone(Posting("03/07/2026", "50,00", "2", "A"));
  ExpectDone(Posting("05/07/2026", "7,00", "1", "A"));

  const Outcome part = Run({"baixar", "2", "--parcial", "--valor", "-300,00", "--data", "04/07/2026"});
  const std::size_t after = part.out.find("\nDepois da baixa parcial:\n");
  ASSERT_NE(after, std::string::npos) << part;
  EXPECT_TRUE(part.out.starts_with("Antes:\nData ") && Contains(part.out.substr(0, after), "-400,00  aberto         0"))
      << part;
  EXPECT_TRUE(Contains(part.out.substr(after), "-300,00  realizado       1")) << part;
  ExpectDone({"baixar", "1", "--total", "--data", "2026-07-01", "--valor", "1000"});
  ExpectDone({"baixar", "3", "--nao-realizado"});
  ExpectDone({"baixar", "4", "--total"});
  EXPECT_EQ(Fields(2, {"Data", "ValorPago", "IdConcorrencia", "SaldoGlobal"}),
            R"(["2026-07-04","-300.00",1,"700.00"])");
  EXPECT_EQ(Fields(3, {"Data", "Realizado", "SaldoGlobal"}), R"(["2026-07-03","nao-realizado","1000.00"])");
  EXPECT_EQ(Rows("SELECT Data - Date() As Dias FROM Lancamentos WHERE Id = 4")[0]["Dias"], 0);
  EXPECT_TRUE(Contains(Run({"extrato"}).out, "entradas 1.007,00; saídas -300,00; fora dos saldos, 1 não realizado."));

  ExpectDone({"estornar", "1", "--historico", "Engano meu"});
  const std::vector<std::string> marks{"Realizado", "Historico", "Valor", "IdConcorrencia", "Estorno", "Estornado"};
  EXPECT_EQ(Fields(1, marks), R"(["estornado","MOVIMENTO","1000.00",2,false,true])");
  EXPECT_EQ(Fields(5, marks), R"(["estorno","ENGANO MEU","-1000.00",0,true,false])");
  const Outcome deleted = Run({"excluir", "2"});
  EXPECT_TRUE(Contains(deleted.out,
                       "\nLançamento 2 de 04/07/2026 excluído. Sem ele, saldo da conta 1.1 naquele ponto: "
                       "0,00; saldo global: 0,00.\n"))
      << deleted;
  EXPECT_EQ(Rows("SELECT Count(*) As N FROM Lancamentos")[0]["N"], 4);
  ExpectDone({"verificar"});

  std::map<int, std::string> actions;
  for (const auto& row : nlohmann::json::parse(Run({"diario", "--json"}).out, nullptr, false)) {
    actions[row["Id"]] += row["IdAcao"].get<std::string>() + ";";
  }
  EXPECT_EQ(actions[1], "inclusão;baixa total;estorno;");
  EXPECT_EQ(actions[2], "inclusão;baixa parcial;exclusão;");
  EXPECT_EQ(actions[3], "inclusão;baixa como não realizado;");
  EXPECT_EQ(actions[5], "estorno;");
}

TEST_F(CliTest, ChangesBothLegsOfATransfer) {
  MakeCompany();
  ExpectDone(Posting("03/07/2026", "100,00", "1.1", "R"));
  const auto transfer = [](const std::string& to, const std::string& amount, const std::vector<std::string>& rest) {
    std::vector<std::string> all{"transferir", "--de", "1", "--para", to, "--valor", amount, "--data", "02/07/2026"};
    all.insert(all.end(), rest.begin(), rest.end());
    return all;
  };
  ExpectDone(transfer("2", "2.500,50",
                      {"--historico", "Depósito", "--historico-entrada", "Recebido", "--documento", "GUIA 7"}));
  const std::vector<std::string> fields{"CodConta", "Historico", "Documento", "Valor", "SaldoConta", "Transferencia"};
  EXPECT_EQ(Fields(2, fields), R"(["1","Depósito","GUIA 7","-2500.50","-2500.50",1])");
  EXPECT_EQ(Fields(3, fields), R"(["2","Recebido","GUIA 7","2500.50","2500.50",2])");

  ExpectFailure(1, "não pode ser baixado com data diferente", {"baixar", "3", "--total", "--data", "04/07/2026"});
  ExpectDone({"baixar", "3", "--total"});  // on its own day, not today
  EXPECT_EQ(Fields(2, {"Realizado", "ValorPago"}), R"(["realizado","-2500.50"])");
  const Outcome reversed = Run({"estornar", "2", "--historico", "Conta errada"});
  for (const char* row : {"2  1      001", "3  2      001", "4  1      001", "5  2      001"}) {
    EXPECT_TRUE(Contains(reversed.out.substr(reversed.out.find("Depois")), row)) << row << '\n' << reversed;
  }
  ExpectDone(transfer("2", "1", {"--historico-saida", "Vai", "--historico-entrada", "Vem"}));
  const Outcome deleted = Run({"excluir", "7"});
  EXPECT_TRUE(Contains(deleted.out, "Lançamento 6 de 02/07/2026 excluído.")) << deleted;
  EXPECT_TRUE(Contains(deleted.out, "Lançamento 7 de 02/07/2026 excluído.")) << deleted;
  EXPECT_EQ(Rows("SELECT Count(*) As N FROM Lancamentos")[0]["N"], 5);
  ExpectDone(transfer("2", "1", {"--historico", "Não foi"}));
  ExpectDone({"baixar", "8", "--nao-realizado"});
  EXPECT_TRUE(Contains(Run({"diario", "--lancamento", "9"}).out, "baixa como não realizado   9"));
  ExpectDone({"verificar"});

  ExpectRefused(2, "Informe --historico TEXTO", transfer("2", "1", {"--historico-saida", "Vai"}));
  ExpectRefused(2, "Informe --para CONTA", {"transferir", "--de", "1"});
  ExpectRefused(2, "--de e --para são a mesma", transfer(" 1 ", "1", {"--historico", "X"}));
  ExpectRefused(2, "maior do que zero", transfer("2", "0", {"--historico", "X"}));
  ExpectRefused(1, "Apóstrofos não são permitidos", transfer("2", "1", {"--historico", "Caixa d'água"}));
  ExpectRefused(1, "mais do que 50 caracteres", transfer("2", "1", {"--historico", std::string(51, 'X')}));
  ExpectRefused(1, "Conta '9' não está cadastrada.", transfer("9", "1", {"--historico", "X"}));
}

TEST_F(CliTest, TellsWhyAnEntryCannotBeChanged) {
  MakeCompany();
  ExpectDone(Posting("01/07/2026", "100,00", "1.1", "R"));
  ExpectRefused(2, "Informe o ID do lançamento.", {"excluir"});
  ExpectRefused(2, "Número inválido 'um'", {"excluir", "um"});
  ExpectRefused(2, "Informe --total, --parcial ou --nao-realizado.", {"baixar", "1"});
  ExpectRefused(2, "--total não vale com --parcial", {"baixar", "1", "--total", "--parcial"});
  ExpectRefused(2, "Informe --valor VALOR.", {"baixar", "1", "--parcial"});
  ExpectRefused(2, "não pode ser zero", {"baixar", "1", "--parcial", "--valor", "0,00"});
  ExpectRefused(2, "mantém data e valor", {"baixar", "1", "--nao-realizado", "--data", "01/07/2026"});
  ExpectRefused(2, "Informe --historico TEXTO.", {"estornar", "1"});
  ExpectRefused(1, "O lançamento 9 não existe.", {"estornar", "9", "--historico", "X"});
  ExpectFailure(1, "sinal diferente", {"baixar", "1", "--parcial", "--valor", "-50"});
  ExpectFailure(1, "valor baixado diferente", {"baixar", "1", "--total", "--valor", "99"});
  const Outcome changed = ExpectFailure(1, "outro usuário o alterou", {"excluir", "1", "--versao", "1"});
  EXPECT_TRUE(Contains(changed.out, "aberto         0")) << changed;  // what it is now
  ExpectDone({"desativar", "conta", "1.1"});
  ExpectFailure(1, "Conta '1.1' está desativada.", {"baixar", "1", "--total"});
  ExpectFailure(1, "Conta '1.1' está desativada.", {"estornar", "1", "--historico", "X"});
  ExpectDone({"ativar", "conta", "1.1"});
  ExpectDone({"baixar", "1", "--nao-realizado", "--versao", "0"});
  ExpectFailure(1, "O lançamento já está baixado.", {"baixar", "1", "--total"});
}

TEST_F(CliTest, AsksAtATerminalAndChangesOnlyWhatWasSeen) {
  MakeCompany();
  for (int entry = 0; entry < 2; ++entry) ExpectDone(Posting("01/07/2026", "100,00", "1.1", "R"));
  const int keyboard = posix_openpt(O_RDWR | O_NOCTTY);
  ASSERT_TRUE(keyboard >= 0 && grantpt(keyboard) == 0 && unlockpt(keyboard) == 0);
  const std::string terminal = ptsname(keyboard);
  const int kept = open(terminal.c_str(), O_RDWR | O_NOCTTY);  // what is typed early waits in it
  const auto type = [keyboard](const std::string& keys) {
    EXPECT_EQ(write(keyboard, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
  };
  const auto runTyping = [&](const std::string& keys, const std::vector<std::string>& arguments) {
    type(keys);
    return Await(Start(arguments, "-terminal", terminal), "-terminal");
  };

  EXPECT_EQ(runTyping("1\np\n60,00\n", {"baixar", "--data", "02/07/2026"}).code, 0);
  EXPECT_EQ(Fields(1, {"Data", "Valor"}), R"(["2026-07-02","60.00"])");
  const Outcome unsure = runTyping("\n", {"excluir", "1"});
  EXPECT_EQ(unsure.code, 1);
  EXPECT_TRUE(Contains(unsure.err, "Excluir este lançamento? (s/N): Nada foi excluído.\n")) << unsure;
  EXPECT_EQ(runTyping("Troco\nn\n", {"estornar", "1"}).code, 1);
  EXPECT_EQ(Fields(1, {"Estornado", "IdConcorrencia"}), "[false,1]");
  EXPECT_EQ(runTyping("", {"estornar", "1", "--historico", "X", "--sim"}).code, 0);

  // Another user settles the entry between its being shown and confirmed.
  const pid_t slow = Start({"excluir", "2"}, "-terminal", terminal);
  while (!Contains(ContentOf(folder_ / "err-terminal"), "(s/N)") && waitpid(slow, nullptr, WNOHANG) == 0) usleep(1000);
  ExpectDone({"baixar", "2", "--total"});
  type("s\n");
  const Outcome late = Await(slow, "-terminal");
  EXPECT_EQ(late.code, 1) << late;
  EXPECT_TRUE(Contains(late.err, "outro usuário o alterou enquanto você o acessava")) << late;
  EXPECT_EQ(Fields(2, {"Realizado"}), R"(["realizado"])");
  EXPECT_EQ(runTyping("S\n", {"excluir", "2"}).code, 0);
  close(kept);
  close(keyboard);
}

TEST_F(CliTest, CommandsThatComeSecondTryAgain) {
  MakeCompany();
  for (int entry = 0; entry < 5; ++entry) ExpectDone(Posting("01/07/2026", "100,00", "1.1", "R"));
  const std::vector<std::string> transfer{"transferir", "--de", "1", "--para", "2", "--valor", "5", "--historico", "T"};
  const std::vector<std::vector<std::string>> commands = {{"excluir", "1"},
                                                          {"estornar", "2", "--historico", "E"},
                                                          {"baixar", "3", "--total"},
                                                          {"baixar", "4", "--parcial", "--valor", "1,00"},
                                                          {"baixar", "5", "--nao-realizado"},
                                                          Posting("30/06/2026", "1,00", "1", "R"),
                                                          Posting("30/06/2026", "2,00", "1", "R"),
                                                          transfer,
                                                          transfer};
  std::vector<pid_t> running;
  for (const auto& command : commands) running.push_back(Start(command, std::to_string(running.size())));
  for (std::size_t i = 0; i < running.size(); ++i) {
    const Outcome outcome = Await(running[i], std::to_string(i));
    EXPECT_EQ(outcome.code, 0) << commands[i][0] << ' ' << outcome;
  }
  EXPECT_EQ(Rows("SELECT Count(*) As N FROM Lancamentos")[0]["N"], 5 - 1 + 1 + 2 + 4);
  ExpectDone({"verificar"});
}

TEST_F(CliTest, ExitCodesTellFailuresApart) {
  ExpectRefused(3, "não", {"extrato"});  // no such file
  MakeCompany();
  ExpectRefused(3, "já existe", {"criar", "--nome", "Outra"});
  ExpectRefused(3, "", {"extrato", "-a", WriteFile("texto.txt", "isto não é um livro")});
  ExpectRefused(3, "", {"consultar", "SELECT * FROM Nada"});
  ExpectRefused(3, "", {"consultar", "DELETE FROM Contas"});
  ExpectRefused(2, "Não conheço o comando 'nada'.", {"nada"});
  ExpectRefused(2, "Faltando informar o comando.", {});
  ExpectRefused(2, "Não entendi --nada.", {"extrato", "--nada"});
  ExpectRefused(2, "Faltando o valor de --de.", {"extrato", "--de"});
  ExpectRefused(2, "Valor inválido em --situacao.", {"extrato", "--situacao", "feito"});
  ExpectRefused(2, "Valor inválido em --data.", Posting("01/07/2026", "1", "1", "R", {"--data", ""}));
  ExpectRefused(2, "--ate vem antes de --de", {"extrato", "--de", "02/07/2026", "--ate", "01/07/2026"});
  ExpectRefused(2, "Data inválida '5/7/30'", {"extrato", "--de", "5/7/30"});
  ExpectRefused(1, "não pode desativar a si mesmo", {"desativar", "usuario", "ANA"});

  environment_["TESOVIA_SENHA"] = "outra";
  ExpectRefused(4, "Informação de senha ou usuário incorreta.", {"extrato"});
  environment_["TESOVIA_SENHA"] = "' OR '1'='1";
  ExpectRefused(4, "Informação de senha ou usuário incorreta", {"extrato"});
  environment_.erase("TESOVIA_SENHA");
  ExpectRefused(2, "TESOVIA_SENHA", {"extrato"});
  environment_.erase("TESOVIA_USUARIO");
  ExpectRefused(2, "TESOVIA_USUARIO", {"extrato"});
  environment_.erase("TESOVIA_ARQUIVO");
  ExpectRefused(2, "TESOVIA_ARQUIVO", {"extrato"});
}

TEST_F(CliTest, RegistersOnlyWhatStatementsAndBalancesCanHold) {
  MakeCompany();
  for (const std::string code : {"1*", "1?", "1#", "[1", "1]", "1'", "1\"", "@@@", "$@#", "", "  "}) {
    ExpectRefused(1, "Código", {"cadastrar", "conta", code, "X"});
  }
  ExpectRefused(1, "mais do que 31 caracteres", {"cadastrar", "centro", std::string(32, '1'), "X"});
  ExpectDone({"cadastrar", "centro", std::string(31, '1'), "Ação à vista"});
  ExpectRefused(1, "mais do que 50 caracteres", {"cadastrar", "conta", "3", std::string(51, 'X')});
  ExpectRefused(1, "apóstrofos, aspas", {"cadastrar", "parceiro", "SANTA BARBARA D'OESTE"});
  ExpectRefused(2, "UTF-8", {"cadastrar", "conta", "3", "A\xE7\xE3o"});
  ExpectRefused(1, "Conta '1.1' já está cadastrada.", {"cadastrar", "conta", " 1.1 ", "OUTRA"});
  ExpectRefused(1, "Receita/despesa 'r' já está cadastrada.", {"cadastrar", "receita-despesa", "r", "OUTRA"});
  ExpectRefused(1, "já está cadastrado com essa filial",
                {"cadastrar", "parceiro", "MOINHO AZUL", "--filial", "CENTRO"});
  ExpectDone({"cadastrar", "parceiro", "MOINHO AZUL"});
  ExpectRefused(2, "--tipo", {"cadastrar", "receita-despesa", "Z", "Z", "--tipo", "ambos"});
  ExpectRefused(1, "Conta '7' não está cadastrada.", {"desativar", "conta", "7"});
  ExpectRefused(1, "reservada", {"ativar", "receita-despesa", "001"});

  environment_["TESOVIA_SENHA_NOVA"] = "d'agua";
  ExpectRefused(1, "na senha", {"cadastrar", "usuario", "rui", "Rui Lima"});
  environment_["TESOVIA_SENHA_NOVA"] = "Marés 7";
  ExpectDone({"cadastrar", "usuario", "rui", "Rui Lima"});
  environment_["TESOVIA_SENHA"] = "Marés 7";
  ExpectDone({"extrato", "-u", "rui"});
  environment_["TESOVIA_SENHA"] = "marés 7";
  ExpectRefused(4, "incorreta", {"extrato", "-u", "rui"});
  environment_["TESOVIA_SENHA"] = "segredo";
  ExpectDone({"desativar", "usuario", "rui"});
  environment_["TESOVIA_SENHA"] = "Marés 7";
  ExpectRefused(4, "Usuário desativado.", {"extrato", "-u", "rui"});
}

TEST_F(CliTest, VerificationNamesTheFirstWrongBalance) {
  MakeCompany();
  for (const char* day : {"05", "03", "04"}) {
    ExpectDone(Posting(std::string(day) + "/07/2026", "1.500,25", "1.1", "R", {"--centro", "L", "--parceiro", "1"}));
  }
  for (const std::string balance :
       {"SaldoConta", "SaldoRecDesp", "SaldoCentroCusto", "SaldoParceiroComl", "SaldoGlobal"}) {
    Tamper("UPDATE Lancamentos SET " + balance + " = " + balance + " + 1 WHERE Id = 3");
    Tamper("UPDATE Lancamentos SET SaldoGlobal = 0 WHERE Id = 1");  // a later one, which is not named
    const Outcome outcome = Run({"verificar"});
    EXPECT_EQ(outcome.code, 1) << outcome;
    EXPECT_TRUE(Contains(outcome.out, "Diferença no lançamento 3 de 04/07/2026 (chave 20260704000000003): " + balance +
                                          " gravado 3.000,5001, correto 3.000,50."))
        << outcome;
    Tamper("UPDATE Lancamentos SET " + balance + " = " + balance + " - 1 WHERE Id = 3");
    Tamper("UPDATE Lancamentos SET SaldoGlobal = 45007500 WHERE Id = 1");
  }
  EXPECT_EQ(Run({"verificar"}).code, 0);

  // Settled as not realised, the first entry leaves all balances from its own on.
  Tamper("UPDATE Lancamentos SET Realizado = 'N' WHERE Id = 2");
  const Outcome outcome = Run({"verificar"});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_TRUE(Contains(outcome.out, "lançamento 2 de 03/07/2026")) << outcome;
  EXPECT_TRUE(Contains(outcome.out, "SaldoConta gravado 1.500,25, correto 0,00.")) << outcome;
}

TEST_F(CliTest, TracesStatementsWithoutPasswords) {
  MakeCompany();
  environment_["TESOVIA_SENHA_NOVA"] = "outro segredo";
  const std::string trace = (folder_ / "rastro.txt").string();
  ExpectDone({"cadastrar", "usuario", "rui", "Rui Lima", "--rastrear", trace});
  std::string text = ContentOf(trace);
  EXPECT_TRUE(Contains(text, "Select * From Usuarios where IdLogin='ana' AND Senha='***'\n")) << text;
  EXPECT_TRUE(Contains(text, "INSERT INTO Usuarios")) << text;
  EXPECT_FALSE(Contains(text, "segredo")) << text;

  const std::string kept = ContentOf(trace);
  EXPECT_EQ(Run(Posting("01/07/2026", "1", "1", "R", {"--rastrear", trace})).code, 2);
  EXPECT_EQ(ContentOf(trace), kept);
  ExpectDone(Posting("01/07/2026", "1", "1", "R", {"--rastrear", trace + "2"}));
  text = ContentOf(trace + "2");
  EXPECT_TRUE(Contains(text, "UPDATE Serial Set Serial = Serial + 1 where Serial = 0\n  -> 1\n")) << text;
  EXPECT_TRUE(Contains(text, "\nCommitTrans")) << text;
}

TEST_F(CliTest, ImportsOnceHoweverOftenItIsRun) {
  MakeCompany();
  const std::string good = "01/07/2026;100,00;Venda;1;R\r\n01/07/2026;100,00;Venda;1;R\r\n";
  const std::string header =
      "\xEF\xBB\xBF"
      "Data;Valor;Histórico;Conta;Receita/Despesa\r\n";
  const std::string file = WriteFile(
      "julho.csv", header + good + "02/07/2026;-5,00;Erro de sinal;1;R\r\n\r\n03/07/2026;\"1.234,56\";Fim;1.1;R");

  const Outcome first = Run({"importar", file});
  EXPECT_EQ(first.code, 1) << first;
  EXPECT_EQ(first.out, "julho.csv: 3 linhas lançadas, 0 já lançadas antes, 1 recusada.\n");
  EXPECT_TRUE(Contains(first.err, "linha 4: A receita/despesa informada está especificada para aceitar")) << first;
  EXPECT_TRUE(Contains(Run({"importar", file}).out, "0 linhas lançadas, 3 já lançadas antes, 1 recusada."));

  // The refused line, put right, posts; the others stay as they are.
  WriteFile("julho.csv", header + good + "02/07/2026;-5,00;Erro de sinal;1;D\r\n\r\n03/07/2026;\"1.234,56\";Fim;1.1;R");
  const Outcome mended = Run({"importar", file});
  EXPECT_EQ(mended.code, 0) << mended;
  EXPECT_TRUE(Contains(mended.out, "1 linha lançada, 3 já lançadas antes, 0 recusadas.")) << mended;
  EXPECT_EQ(Rows("SELECT Sum(Valor) As Total, Count(*) As N FROM Lancamentos"),
            nlohmann::json::parse(R"([{"Total": "1429.56", "N": 4}])"));

  // Another file of the same name is refused before its new lines are posted, and posts under a name of its own.
  WriteFile("julho.csv",
            header + "31/07/2026;1,00;Outra;1;R\n31/07/2026;2,00;Outra;1;R\n\n\n\n\n31/07/2026;3,00;Nova;1;R\n");
  ExpectRefused(1, "A linha 2 de 'julho.csv' já foi lançada com outro conteúdo", {"importar", file});
  EXPECT_EQ(Rows("SELECT Count(*) As N FROM Lancamentos")[0]["N"], 4);
  EXPECT_EQ(Run({"importar", file, "--identidade", "julho, segunda parte"}).code, 0);
  EXPECT_EQ(Rows("SELECT Count(*) As N FROM Lancamentos")[0]["N"], 7);
  EXPECT_EQ(Run({"verificar"}).code, 0);
}

TEST_F(CliTest, ImportRefusesLinesOneByOneWithTheirReasons) {
  MakeCompany();
  const Outcome outcome = Run({"importar", WriteFile("entradas.csv",
                                                     "conta,data,valor,historico,receita-despesa,centro,parceiro\n"
                                                     "1,2026-07-01,\"1,50\",\"Diz \"\"sim\"\"\",R,L,1\n"
                                                     "1,2026-07-01,1.50,\"aberta,R,L,1\n"
                                                     "1,2026-07-01,1.50,Venda,R,L\n"
                                                     "1,2026-07-01,1.50,A\xE7\xE3o,R,,\n"
                                                     "1,2026-02-30,1.50,Venda,R,,\n"
                                                     "1,2026-07-01,\"1,505\",Venda,R,,\n"
                                                     "1,2026-07-01,1.50,Pau d'agua,R,,\n"
                                                     "1,2026-07-01,1.50,Venda,R,,99\n"
                                                     ",,,,,,\n"
                                                     "1,2026-07-01,1.50,\"Venda; \tfim\",R,,\n")});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_TRUE(Contains(outcome.out, "2 linhas lançadas, 0 já lançadas antes, 7 recusadas.")) << outcome;
  for (const char* reason :
       {"linha 3: aspas fora do lugar ou não fechadas", "linha 4: tem 6 campos; o cabeçalho tem 7.",
        "linha 5: o texto não está em UTF-8", "linha 7: Valor inválido '1,505'", "linha 6: Data inválida '2026-02-30'",
        "linha 8: Apóstrofos não são permitidos", "linha 9: Não foi possível incluir o lançamento. Possível causa",
        "Parceiro '99' não está cadastrado."}) {
    EXPECT_TRUE(Contains(outcome.err, reason)) << reason << '\n' << outcome;
  }
  EXPECT_EQ(Rows("SELECT Historico, Valor FROM Lancamentos ORDER BY Id"), nlohmann::json::parse(R"([
              {"Historico": "DIZ \"SIM\"", "Valor": "1.50"},
              {"Historico": "VENDA; \tFIM", "Valor": "1.50"}])"));

  ExpectRefused(2, "Coluna desconhecida: 'preco'", {"importar", WriteFile("a.csv", "data;preco\n")});
  ExpectRefused(2, "Falta a coluna 'valor'", {"importar", WriteFile("b.csv", "data;historico;conta;recdesp\n")});
  ExpectRefused(2, "Coluna repetida: 'Data'", {"importar", WriteFile("c.csv", "data;Data\n")});
  ExpectRefused(2, "está vazio", {"importar", WriteFile("d.csv", "\n\n")});
  ExpectRefused(3, "Não foi possível ler", {"importar", (folder_ / "nenhum.csv").string()});
}

TEST_F(CliTest, ImportGoesOnAcrossManyBatches) {
  MakeCompany();
  std::ostringstream csv;
  csv << "data;valor;historico;conta;recdesp\n";
  for (int line = 0; line < 1300; ++line)
    csv << (1 + line % 28) << "/07/2026;0,01;Venda;1.1;" << (line % 100 == 7 ? 'X' : 'R') << '\n';
  const std::string file = WriteFile("muitas.csv", csv.str());
  EXPECT_TRUE(Contains(Run({"importar", file}).out, "1.287 linhas lançadas, 0 já lançadas antes, 13 recusadas."));
  EXPECT_TRUE(Contains(Run({"importar", file}).out, "0 linhas lançadas, 1.287 já lançadas antes, 13 recusadas."));
  EXPECT_EQ(Rows("SELECT Sum(Valor) As Total FROM Lancamentos")[0]["Total"], "12.87");
  EXPECT_EQ(Run({"verificar"}).code, 0);
}

TEST_F(CliTest, ImportThatWasKilledGoesOnWhereItStopped) {
  MakeCompany();
  std::ostringstream csv;
  csv << "data;valor;historico;conta;recdesp\n";
  for (int line = 0; line < 4000; ++line) csv << "01/07/2026;0,01;Venda;1.1;R\n";
  const std::string file = WriteFile("longa.csv", csv.str());

  const pid_t import = Start({"importar", file});
  for (int posted = 0; posted == 0;) {  // killed once a first batch is in
    ASSERT_EQ(waitpid(import, nullptr, WNOHANG), 0) << "the import ended before it could be killed";
    posted = Rows("SELECT Count(*) As N FROM Lancamentos")[0]["N"];
  }
  kill(import, SIGKILL);
  waitpid(import, nullptr, 0);

  const int before = Rows("SELECT Count(*) As N FROM LinhasImportadas")[0]["N"];
  EXPECT_GT(before, 0);
  EXPECT_EQ(Rows("SELECT Count(*) As N FROM Lancamentos")[0]["N"], before);
  EXPECT_EQ(Run({"importar", file}).code, 0);
  EXPECT_EQ(Rows("SELECT Count(*) As N FROM Lancamentos")[0]["N"], 4000);
  EXPECT_EQ(Run({"verificar"}).code, 0);
}

}  // namespace
