#include <csignal>
#include <sstream>

#include "support/CommandLine.h"

// Masters, postings, statements, the verification and the import.
namespace tsv::test {
namespace {

using CliTest = CommandLine;

TEST_F(CliTest, KeepsTheBooksOfASmallCompany) {
  MakeCompany();
  Done(Posting("01/07/2026", "1.000,00", "1", "R"));
  Done(Posting("2026-07-03", "0,10", "1.1", "R", "--centro L --parceiro 1 --documento 'NF 1'"));
  Done(Posting("03/07/2026", "-250,5", "2", "D"));
  EXPECT_EQ(Done(Posting("02/07/2026", "-0,20", "1.1", "D")),
            "Lançamento 4 de 02/07/2026 gravado. Depois dele, saldo da conta 1.1: -0,20; saldo global: 999,80.\n");
  EXPECT_EQ(nlohmann::json::parse(Done("extrato --json")).size(), 4u);
  EXPECT_EQ(Fields(2, {"Data", "Historico", "SaldoConta", "SaldoRecDesp", "SaldoCentroCusto", "SaldoParceiroComl",
                       "SaldoGlobal"}),
            R"(["2026-07-03","MOVIMENTO","-0.10","1000.10","0.10","0.10","999.90"])");
  EXPECT_EQ(Fields(3, {"SaldoCentroCusto", "SaldoGlobal"}), R"([null,"749.40"])");

  const std::string table = Done("extrato");
  ExpectTold(table, "1.000,00");
  ExpectTold(table, "4 lançamentos; entradas 1.000,10; saídas -250,70.");
  ExpectTold(Done("diario --csv --lancamento 2"),
             ";Ana Souza;inclusão;2;03/07/2026;1.1;COFRE;R;RECEITAS;L;MOINHO AZUL;NF 1;");
  const std::string check = Done("verificar");
  ExpectTold(check, "Conferidos os cinco saldos de 4 lançamentos: nenhuma diferença.");
  ExpectTold(check, "Não se confere");
}

TEST_F(CliTest, StatementShowsOnlyWhatIsAskedFor) {
  MakeCompany();
  Done(Posting("01/07/2026", "1,00", "1", "A"));
  Done(Posting("02/07/2026", "2,00", "1.1", "A"));
  Done(Posting("03/07/2026", "3,00", "2", "A"));
  const std::pair<const char*, std::vector<int>> cases[] = {
      {"--de 02/07/2026", {2, 3}}, {"--ate 2026-07-02", {1, 2}},     {"--de 02/07/2026 --ate 02/07/2026", {2}},
      {"--conta 1", {1, 2}},       {"--situacao aberto", {1, 2, 3}}, {"--situacao realizado", {}},
  };
  for (const auto& [filters, expected] : cases) {
    std::vector<int> found;
    for (const auto& row : nlohmann::json::parse(Done(std::string("extrato --json ") + filters), nullptr, false)) {
      found.push_back(row["Id"]);
    }
    EXPECT_EQ(found, expected) << filters;
  }
  RunListed("refused statements");
}

TEST_F(CliTest, TellsWhyAPostingIsRefused) {
  MakeCompany();
  RunListed("refused postings");
  Done("desativar conta 1");
  const Outcome box = Run(Posting("01/07/2026", "1", "1", "R"));
  EXPECT_EQ(box.code, 1);
  EXPECT_EQ(
      box.err,
      "Não foi possível incluir o lançamento.\nPossível causa: a conta, receita/despesa, centro de custo/lucro ou "
      "cliente/fornecedor foi desativado.\nConta '1' está desativada.\n");
  Done("ativar conta 1");
  Done(Posting("01/07/2026", "1", "1", "R"));
}

TEST_F(CliTest, ExitCodesTellFailuresApart) {
  Refused(3, "não", "extrato");  // no such file
  MakeCompany();
  RunListed("refused commands");
  Refused(2, "Faltando informar o comando.", "");
  Refused(3, "", "extrato -a " + WriteFile("texto.txt", "isto não é um livro"));
  for (const char* wrong : {"outra", "' OR '1'='1"}) {
    environment_["TESOVIA_SENHA"] = wrong;
    Refused(4, "Informação de senha ou usuário incorreta", "extrato");
  }
  for (const char* needed : {"TESOVIA_SENHA", "TESOVIA_USUARIO", "TESOVIA_ARQUIVO"}) {
    environment_.erase(needed);
    Refused(2, needed, "extrato");
  }
}

TEST_F(CliTest, RegistersOnlyWhatStatementsAndBalancesCanHold) {
  MakeCompany();
  RunListed("codes and names");
  Refused(2, "UTF-8", "cadastrar conta 3 A\xE7\xE3o");
}

TEST_F(CliTest, UsersLogInWithTheirPasswordsUntilTheyAreDeactivated) {
  MakeCompany();
  const std::string rui = "cadastrar usuario rui 'Rui Lima'";
  environment_["TESOVIA_SENHA_NOVA"] = "d'agua";
  Refused(1, "na senha", rui);
  environment_["TESOVIA_SENHA_NOVA"] = "Marés 7";
  Done(rui);
  environment_["TESOVIA_SENHA"] = "Marés 7";
  Done("extrato -u rui");
  environment_["TESOVIA_SENHA"] = "marés 7";
  Refused(4, "incorreta", "extrato -u rui");
  environment_["TESOVIA_SENHA"] = "segredo";
  Done("desativar usuario rui");
  environment_["TESOVIA_SENHA"] = "Marés 7";
  Refused(4, "Usuário desativado.", "extrato -u rui");
}

TEST_F(CliTest, VerificationNamesTheFirstWrongBalance) {
  MakeCompany();
  for (const std::string day : {"05", "03", "04"}) {
    Done(Posting(day + "/07/2026", "1.500,25", "1.1", "R", "--centro L --parceiro 1"));
  }
  for (const std::string balance :
       {"SaldoConta", "SaldoRecDesp", "SaldoCentroCusto", "SaldoParceiroComl", "SaldoGlobal"}) {
    Tamper("UPDATE Lancamentos SET " + balance + " = " + balance + " + 1 WHERE Id = 3");
    Tamper("UPDATE Lancamentos SET SaldoGlobal = 0 WHERE Id = 1");  // a later one, which is not named
    const Outcome outcome = Run("verificar");
    EXPECT_EQ(outcome.code, 1) << outcome;
    ExpectTold(outcome.out, "Diferença no lançamento 3 de 04/07/2026 (chave 20260704000000003): " + balance +
                                " gravado 3.000,5001, correto 3.000,50.");
    Tamper("UPDATE Lancamentos SET " + balance + " = " + balance + " - 1 WHERE Id = 3");
    Tamper("UPDATE Lancamentos SET SaldoGlobal = 45007500 WHERE Id = 1");
  }
  Done("verificar");

  // Settled as not realised, the first entry leaves all balances from its own on.
  Tamper("UPDATE Lancamentos SET Realizado = 'N' WHERE Id = 2");
  const Outcome outcome = Run("verificar");
  EXPECT_EQ(outcome.code, 1);
  ExpectTold(outcome.out, "lançamento 2 de 03/07/2026");
  ExpectTold(outcome.out, "SaldoConta gravado 1.500,25, correto 0,00.");
}

TEST_F(CliTest, TracesStatementsWithoutPasswords) {
  MakeCompany();
  environment_["TESOVIA_SENHA_NOVA"] = "outro segredo";
  const std::string trace = folder_.Path("rastro.txt");
  Done("cadastrar usuario rui 'Rui Lima' --rastrear " + trace);
  const std::string kept = ContentOf(trace);
  ExpectTold(kept, "Select * From Usuarios where IdLogin='ana' AND Senha='***'\n");
  ExpectTold(kept, "INSERT INTO Usuarios");
  EXPECT_EQ(kept.find("segredo"), std::string::npos) << kept;

  const std::string posting = Posting("01/07/2026", "1", "1", "R", "--rastrear ");
  Failed(2, "", posting + trace);
  EXPECT_EQ(ContentOf(trace), kept);
  Done(posting + trace + "2");
  ExpectTold(ContentOf(trace + "2"), "UPDATE Serial Set Serial = Serial + 1 where Serial = 0\n  -> 1\n");
  ExpectTold(ContentOf(trace + "2"), "\nCommitTrans");
}

TEST_F(CliTest, ImportsOnceHoweverOftenItIsRun) {
  MakeCompany();
  const std::string header =
      "\xEF\xBB\xBF"
      "Data;Valor;Histórico;Conta;Receita/Despesa\r\n";
  const std::string good = header + "01/07/2026;100,00;Venda;1;R\r\n01/07/2026;100,00;Venda;1;R\r\n";
  const std::string last = "\r\n\r\n03/07/2026;\"1.234,56\";Fim;1.1;R";
  const std::string file = WriteFile("julho.csv", good + "02/07/2026;-5,00;Erro de sinal;1;R" + last);

  const Outcome first = Run("importar " + file);
  EXPECT_EQ(first.code, 1) << first;
  EXPECT_EQ(first.out, "julho.csv: 3 linhas lançadas, 0 já lançadas antes, 1 recusada.\n");
  ExpectTold(first.err, "linha 4: A receita/despesa informada está especificada para aceitar");
  ExpectTold(Run("importar " + file).out, "0 linhas lançadas, 3 já lançadas antes, 1 recusada.");

  // The refused line, put right, posts; the others stay as they are.
  WriteFile("julho.csv", good + "02/07/2026;-5,00;Erro de sinal;1;D" + last);
  ExpectTold(Done("importar " + file), "1 linha lançada, 3 já lançadas antes, 0 recusadas.");
  EXPECT_EQ(Rows("SELECT Sum(Valor) As Total, Count(*) As N FROM Lancamentos").dump(),
            R"([{"N":4,"Total":"1429.56"}])");

  // Another file of the same name is refused before its new lines are posted, and posts under a name of its own.
  WriteFile("julho.csv",
            header + "31/07/2026;1,00;Outra;1;R\n31/07/2026;2,00;Outra;1;R\n\n\n\n\n31/07/2026;3,00;Nova;1;R\n");
  Refused(1, "A linha 2 de 'julho.csv' já foi lançada com outro conteúdo", "importar " + file);
  EXPECT_EQ(Count("Lancamentos"), 4);
  Done("importar " + file + " --identidade 'julho, segunda parte'");
  EXPECT_EQ(Count("Lancamentos"), 7);
  Done("verificar");
}

TEST_F(CliTest, ImportRefusesLinesOneByOneWithTheirReasons) {
  MakeCompany();
  const Outcome outcome = Run("importar " + WriteFile("entradas.csv",
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
                                                      "1,2026-07-01,1.50,\"Venda; \tfim\",R,,\n"));
  EXPECT_EQ(outcome.code, 1);
  ExpectTold(outcome.out, "2 linhas lançadas, 0 já lançadas antes, 7 recusadas.");
  for (const char* reason :
       {"linha 3: aspas fora do lugar ou não fechadas", "linha 4: tem 6 campos; o cabeçalho tem 7.",
        "linha 5: o texto não está em UTF-8", "linha 7: Valor inválido '1,505'", "linha 6: Data inválida '2026-02-30'",
        "linha 8: Apóstrofos não são permitidos", "linha 9: Não foi possível incluir o lançamento. Possível causa",
        "Parceiro '99' não está cadastrado."}) {
    ExpectTold(outcome.err, reason);
  }
  EXPECT_EQ(Rows("SELECT Historico, Valor FROM Lancamentos ORDER BY Id").dump(),
            R"([{"Historico":"DIZ \"SIM\"","Valor":"1.50"},{"Historico":"VENDA; \tFIM","Valor":"1.50"}])");

  const std::pair<const char*, const char*> refused[] = {{"data;preco\n", "Coluna desconhecida: 'preco'"},
                                                         {"data;historico;conta;recdesp\n", "Falta a coluna 'valor'"},
                                                         {"data;Data\n", "Coluna repetida: 'Data'"},
                                                         {"\n\n", "está vazio"}};
  for (const auto& [content, reason] : refused) Refused(2, reason, "importar " + WriteFile("a.csv", content));
  Refused(3, "Não foi possível ler", "importar " + folder_.Path("nenhum.csv"));
}

TEST_F(CliTest, ImportThatWasKilledGoesOnWhereItStopped) {
  MakeCompany();
  std::ostringstream csv;
  csv << "data;valor;historico;conta;recdesp\n";
  for (int line = 0; line < 4000; ++line)
    csv << (1 + line % 28) << "/07/2026;0,01;Venda;1.1;" << (line % 100 == 7 ? 'X' : 'R') << '\n';
  const std::string file = WriteFile("longa.csv", csv.str());

  const pid_t import = Start("importar " + file, "-import");
  while (Count("Lancamentos") == 0) {  // killed once a first batch is in
    ASSERT_EQ(waitpid(import, nullptr, WNOHANG), 0) << "the import ended before it could be killed";
  }
  kill(import, SIGKILL);
  waitpid(import, nullptr, 0);

  const int before = Count("LinhasImportadas");
  EXPECT_GT(before, 0);
  EXPECT_EQ(Count("Lancamentos"), before);
  ExpectTold(Run("importar " + file).out, " já lançadas antes, 40 recusadas.");
  ExpectTold(Run("importar " + file).out, "0 linhas lançadas, 3.960 já lançadas antes, 40 recusadas.");
  EXPECT_EQ(Count("Lancamentos"), 3960);
  Done("verificar");
}

}  // namespace
}  // namespace tsv::test
