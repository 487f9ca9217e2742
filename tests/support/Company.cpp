#include "support/Company.h"

namespace tsv::test {

const MasterColumns kMasterColumns[] = {{"Contas", "Codigo", "DesConta", "Inativa", "Excluida"},
                                        {"TiposMovimentacoes", "Codigo", "DesMovimentacao", "Inativo", "Excluido"},
                                        {"CentrosDeCusto", "Codigo", "DesCentroDeCusto", "Inativo", "Excluido"},
                                        {"ParceirosComerciais", "Id", "Nome", "Inativo", "Inativo"}};

Masters MastersOfCompany() {
  Masters masters;
  for (const char* code : {"1", "1.1", "1.1.2", "1.1.2.5", "1.2", "1.20", "B", "B.1", "8", "9"}) {
    masters[{kAccount, code}] = {std::string("CONTA ") + code};
  }
  for (const char* code : {"0", "00", "0012", "2", "3", "9"}) masters[{kType, code}] = {std::string("TIPO ") + code};
  for (const char* code : {"1", "1.1", "1.10", "9"}) masters[{kCentre, code}] = {std::string("CENTRO ") + code};
  masters[{kType, "001"}] = {"TRANSFERÊNCIA ENTRE CONTAS"};
  masters[{kPartner, "1"}] = {"PADARIA", "CENTRO"};
  masters[{kPartner, "2"}] = {"OFICINA", "SUL"};
  masters[{kPartner, "9"}] = {"EXTINTO", "SUL"};
  masters[{kType, "2"}].accepts = 1;
  masters[{kType, "3"}].accepts = 2;
  masters[{kAccount, "8"}].deleted = true;
  for (const auto table : {kAccount, kType, kCentre, kPartner}) masters[{table, "9"}].inactive = true;
  masters[{kType, "001"}].inactive = true;
  return masters;
}

Company::Company() {
  const auto database = Open();
  const auto execute = [&](const std::string& sql) { database->Execute(sql, db::dbFailOnError); };
  execute("INSERT INTO Usuarios (Id,IdLogin,Senha,Inativo,DesUsuario) VALUES (7,'ana','segredo',False,'ANA SOUZA')");
  execute("INSERT INTO Usuarios (Id,IdLogin,Senha,Inativo,DesUsuario) VALUES (8,'rui','segredo',True,'RUI')");
  const auto truth = [](bool value) { return value ? ",True" : ",False"; };
  std::int32_t id = 10;
  for (const auto& [key, master] : MastersOfCompany()) {
    const auto& [table, code] = key;
    if (code == "001") continue;  // every new ledger has it
    const MasterColumns& names = kMasterColumns[table];
    std::string columns = names.key + std::string(",") + names.description + "," + names.inactive;
    std::string values = (table == kPartner ? code : "'" + code + "'") + ",'" + master.description + "'";
    values += truth(master.inactive);
    if (table == kPartner) {
      columns += ",Filial";
      values += ",'" + master.branch + "'";
    } else {
      columns += std::string(",Id,") + names.deleted;
      values += "," + std::to_string(id++) + truth(master.deleted);
    }
    if (master.accepts != 0) {
      columns += ",Tipo";
      values += "," + std::to_string(master.accepts);
    }
    execute("INSERT INTO " + std::string(names.table) + " (" + columns + ") VALUES (" + values + ")");
  }
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
