#include "support/CommandLine.h"

// Commands that change entries: settling, reversing, deleting and transferring.
namespace tsv::test {
namespace {

using CliOperationsTest = CommandLine;

TEST_F(CliOperationsTest, SettlesReversesAndDeletesEntries) {
  MakeCompany();
  Done(Posting("01/07/2026", "1.000,00", "1", "R"));
  Done(Posting("02/07/2026", "-400,00", "1.1", "D", "--centro L --parceiro 1"));
  Done(Posting("03/07/2026", "50,00", "2", "A"));
  Done(Posting("05/07/2026", "7,00", "1", "A"));

  const std::string part = Done("baixar 2 --parcial --valor -300,00 --data 04/07/2026");
  const std::size_t after = part.find("\nDepois da baixa parcial:\n");
  ASSERT_NE(after, std::string::npos) << part;
  EXPECT_TRUE(part.starts_with("Antes:\nData ")) << part;
  ExpectTold(part.substr(0, after), "-400,00  aberto         0");
  ExpectTold(part.substr(after), "-300,00  realizado       1");
  Done("baixar 1 --total --data 2026-07-01 --valor 1000");
  Done("baixar 3 --nao-realizado");
  Done("baixar 4 --total");
  EXPECT_EQ(Fields(2, {"Data", "ValorPago", "IdConcorrencia", "SaldoGlobal"}),
            R"(["2026-07-04","-300.00",1,"700.00"])");
  EXPECT_EQ(Fields(3, {"Data", "Realizado", "SaldoGlobal"}), R"(["2026-07-03","nao-realizado","1000.00"])");
  EXPECT_EQ(Rows("SELECT Data - Date() As Dias FROM Lancamentos WHERE Id = 4")[0]["Dias"], 0);
  ExpectTold(Done("extrato"), "entradas 1.007,00; saídas -300,00; fora dos saldos, 1 não realizado.");

  Done("estornar 1 --historico 'Engano meu'");
  const std::vector<std::string> marks{"Realizado", "Historico", "Valor", "IdConcorrencia", "Estorno", "Estornado"};
  EXPECT_EQ(Fields(1, marks), R"(["estornado","MOVIMENTO","1000.00",2,false,true])");
  EXPECT_EQ(Fields(5, marks), R"(["estorno","ENGANO MEU","-1000.00",0,true,false])");
  ExpectTold(Done("excluir 2"),
             "\nLançamento 2 de 04/07/2026 excluído. Sem ele, saldo da conta 1.1 naquele ponto: 0,00; saldo global: "
             "0,00.\n");
  EXPECT_EQ(Count("Lancamentos"), 4);
  Done("verificar");

  std::map<int, std::string> actions;
  for (const auto& row : nlohmann::json::parse(Done("diario --json"), nullptr, false)) {
    actions[row["Id"]] += row["IdAcao"].get<std::string>() + ";";
  }
  EXPECT_EQ(actions[1], "inclusão;baixa total;estorno;");
  EXPECT_EQ(actions[2], "inclusão;baixa parcial;exclusão;");
  EXPECT_EQ(actions[3], "inclusão;baixa como não realizado;");
  EXPECT_EQ(actions[5], "estorno;");
}

TEST_F(CliOperationsTest, ChangesBothLegsOfATransfer) {
  MakeCompany();
  const std::string transfer = "transferir --de 1 --para 2 --data 02/07/2026 ";
  Done(Posting("03/07/2026", "100,00", "1.1", "R"));
  Done(transfer + "--valor 2.500,50 --historico Depósito --historico-entrada Recebido --documento 'GUIA 7'");
  const std::vector<std::string> fields{"CodConta", "Historico", "Documento", "Valor", "SaldoConta", "Transferencia"};
  EXPECT_EQ(Fields(2, fields), R"(["1","Depósito","GUIA 7","-2500.50","-2500.50",1])");
  EXPECT_EQ(Fields(3, fields), R"(["2","Recebido","GUIA 7","2500.50","2500.50",2])");

  Failed(1, "não pode ser baixado com data diferente", "baixar 3 --total --data 04/07/2026");
  Done("baixar 3 --total");  // on its own day, not today
  EXPECT_EQ(Fields(2, {"Realizado", "ValorPago"}), R"(["realizado","-2500.50"])");
  const std::string reversed = Done("estornar 2 --historico 'Conta errada'");
  for (const char* row : {"2  1      001", "3  2      001", "4  1      001", "5  2      001"}) {
    ExpectTold(reversed.substr(reversed.find("Depois")), row);
  }
  Done(transfer + "--valor 1 --historico-saida Vai --historico-entrada Vem");
  const std::string deleted = Done("excluir 7");
  ExpectTold(deleted, "Lançamento 6 de 02/07/2026 excluído.");
  ExpectTold(deleted, "Lançamento 7 de 02/07/2026 excluído.");
  EXPECT_EQ(Count("Lancamentos"), 5);
  Done(transfer + "--valor 1 --historico 'Não foi'");
  Done("baixar 8 --nao-realizado");
  ExpectTold(Done("diario --lancamento 9"), "baixa como não realizado   9");
  Done("verificar");
  RunListed("refused transfers");
}

TEST_F(CliOperationsTest, TellsWhyAnEntryCannotBeChanged) {
  MakeCompany();
  RunListed("refused changes of an entry");
  const std::string shown = Failed(1, "outro usuário o alterou", "excluir 1 --versao 0");
  ExpectTold(shown, "nao-realizado");  // what it is now
}

TEST_F(CliOperationsTest, AsksAtATerminalAndChangesOnlyWhatWasSeen) {
  MakeCompany();
  for (int entry = 0; entry < 2; ++entry) Done(Posting("01/07/2026", "100,00", "1.1", "R"));
  const int keyboard = posix_openpt(O_RDWR | O_NOCTTY);
  if (keyboard < 0 || grantpt(keyboard) != 0 || unlockpt(keyboard) != 0) GTEST_SKIP() << "no pseudo-terminals here";
  const std::string terminal = ptsname(keyboard);
  const int kept = open(terminal.c_str(), O_RDWR | O_NOCTTY);  // what is typed early waits in it
  const auto type = [keyboard](const std::string& keys) {
    EXPECT_EQ(write(keyboard, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
  };
  const auto runTyping = [&](const std::string& keys, const std::string& command) {
    type(keys);
    return Await(Start(command, "-terminal", terminal), "-terminal");
  };

  EXPECT_EQ(runTyping("1\np\n60,00\n", "baixar --data 02/07/2026").code, 0);
  EXPECT_EQ(Fields(1, {"Data", "Valor"}), R"(["2026-07-02","60.00"])");
  const Outcome unsure = runTyping("\n", "excluir 1");
  EXPECT_EQ(unsure.code, 1);
  ExpectTold(unsure.err, "Excluir este lançamento? (s/N): Nada foi excluído.\n");
  EXPECT_EQ(runTyping("Troco\nn\n", "estornar 1").code, 1);
  EXPECT_EQ(Fields(1, {"Estornado", "IdConcorrencia"}), "[false,1]");
  EXPECT_EQ(runTyping("", "estornar 1 --historico X --sim").code, 0);

  // Another user settles the entry between its being shown and confirmed.
  const pid_t slow = Start("excluir 2", "-terminal", terminal);
  while (ContentOf(folder_.Path("err-terminal")).find("(s/N)") == std::string::npos &&
         waitpid(slow, nullptr, WNOHANG) == 0) {
    usleep(1000);
  }
  Done("baixar 2 --total");
  type("s\n");
  const Outcome late = Await(slow, "-terminal");
  EXPECT_EQ(late.code, 1) << late;
  ExpectTold(late.err, "outro usuário o alterou enquanto você o acessava");
  EXPECT_EQ(Fields(2, {"Realizado"}), R"(["realizado"])");
  EXPECT_EQ(runTyping("S\n", "excluir 2").code, 0);
  close(kept);
  close(keyboard);
}

TEST_F(CliOperationsTest, CommandsThatComeSecondTryAgain) {
  MakeCompany();
  for (int entry = 0; entry < 5; ++entry) Done(Posting("01/07/2026", "100,00", "1.1", "R"));
  const std::string transfer = "transferir --de 1 --para 2 --valor 5 --historico T";
  const std::string commands[] = {"excluir 1",
                                  "estornar 2 --historico E",
                                  "baixar 3 --total",
                                  "baixar 4 --parcial --valor 1,00",
                                  "baixar 5 --nao-realizado",
                                  Posting("30/06/2026", "1,00", "1", "R"),
                                  Posting("30/06/2026", "2,00", "1", "R"),
                                  transfer,
                                  transfer};
  std::vector<pid_t> running;
  for (const std::string& command : commands) running.push_back(Start(command, std::to_string(running.size())));
  for (std::size_t i = 0; i < running.size(); ++i) {
    const Outcome outcome = Await(running[i], std::to_string(i));
    EXPECT_EQ(outcome.code, 0) << commands[i] << ' ' << outcome;
  }
  EXPECT_EQ(Count("Lancamentos"), 5 - 1 + 1 + 2 + 4);
  Done("verificar");
}

}  // namespace
}  // namespace tsv::test
