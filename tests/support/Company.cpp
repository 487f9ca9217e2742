#include "support/Company.h"

namespace tsv::test {

namespace {

constexpr const char* kMasters[] = {
    "INSERT INTO Usuarios (Id,IdLogin,Senha,Inativo,DesUsuario) VALUES (7,'ana','segredo',False,'ANA SOUZA')",
    "INSERT INTO Usuarios (Id,IdLogin,Senha,Inativo,DesUsuario) VALUES (8,'rui','segredo',True,'RUI')",
    "INSERT INTO ParceirosComerciais (Id,Nome,Filial,Inativo) VALUES (1,'PADARIA','CENTRO',False)",
    "INSERT INTO ParceirosComerciais (Id,Nome,Filial,Inativo) VALUES (2,'OFICINA','SUL',False)",
    "INSERT INTO ParceirosComerciais (Id,Nome,Filial,Inativo) VALUES (9,'EXTINTO','SUL',True)",
};

}  // namespace

Company::Company() {
  const auto database = Open();
  for (const char* row : kMasters) database->Execute(row, db::dbFailOnError);
  std::int32_t id = 10;
  const auto add = [&](std::string_view table, std::string_view columns, std::string_view code,
                       std::string_view description, std::string_view rest) {
    database->Execute("INSERT INTO " + std::string(table) + " (Id,Codigo," + std::string(columns) + ") VALUES (" +
                          std::to_string(id++) + ",'" + std::string(code) + "','" + std::string(description) + " " +
                          std::string(code) + "'," + std::string(rest) + ")",
                      db::dbFailOnError);
  };
  const std::string_view account = "DesConta,Inativa,Excluida";
  for (const char* code : {"1", "1.1", "1.1.2", "1.1.2.5", "1.2", "1.20", "B", "B.1"}) {
    add("Contas", account, code, "CONTA", "False,False");
  }
  add("Contas", account, "9", "CONTA", "True,False");
  add("Contas", account, "8", "CONTA", "False,True");
  const std::string_view type = "DesMovimentacao,Tipo,Inativo,Excluido";
  for (const char* code : {"0", "00", "0012"}) add("TiposMovimentacoes", type, code, "TIPO", "Null,False,False");
  add("TiposMovimentacoes", type, "2", "TIPO", "1,False,False");
  add("TiposMovimentacoes", type, "3", "TIPO", "2,False,False");
  add("TiposMovimentacoes", type, "9", "TIPO", "Null,True,False");
  const std::string_view centre = "DesCentroDeCusto,Inativo,Excluido";
  for (const char* code : {"1", "1.1", "1.10"}) add("CentrosDeCusto", centre, code, "CENTRO", "False,False");
  add("CentrosDeCusto", centre, "9", "CENTRO", "True,False");
  database->Close();
}

void Company::Execute(std::string_view sql) const { Open()->Execute(sql, db::dbFailOnError); }

std::int32_t RecordingHost::MessageBox(std::string_view prompt, std::int32_t buttons, std::string_view title,
                                       std::string_view, std::int32_t) {
  events.push_back("box " + std::to_string(buttons) + " [" + std::string(title) + "] " + std::string(prompt));
  if (onBox) onBox();
  return kOk;
}

std::vector<std::string> Recorder::Texts() const {
  std::vector<std::string> texts;
  for (const Statement& statement : ran) texts.push_back(statement.text);
  return texts;
}

std::shared_ptr<CLancamento> Post(Tesovia& tesovia, const Posting& posting) {
  return tesovia.FazerLancamentoTS(posting.date, posting.reference, posting.amount, posting.history, posting.account,
                                   posting.type, posting.centre, posting.partner, posting.document);
}

CBaixa SettlementOf(std::int32_t id, TIPO_BAIXA kind, Currency amount, const Variant& date, std::int32_t version) {
  CBaixa request;
  request.IdLancamento(id);
  request.IdConcorrencia(version);
  request.TipoBaixa(kind);
  request.ValorBaixado(amount);
  request.DataRealizacao(date);
  return request;
}

CTransferencia TransferOf(std::string_view from, std::string_view to, Currency amount, Date date) {
  CTransferencia request;
  request.CodContaOrigem(from);
  request.CodContaDestino(to);
  request.Valor(amount);
  request.DataDaTransferencia(date);
  request.HistoricoSaida("envio");
  request.HistoricoEntrada("recebimento");
  request.DocumentoSaida(" D1 ");
  return request;
}

LedgerTest::LedgerTest() {
  CurrentSession().host = host;
  tesovia.InicializarTS(company.Path(), "ana", "segredo");
}

LedgerTest::~LedgerTest() {
  CurrentSession().host = std::make_shared<Host>();
  if (CurrentSession().BancoDeDados) CurrentSession().BancoDeDados->Observe(nullptr);
}

}  // namespace tsv::test
