#include "EntryTable.h"

#include <iostream>

#include "Texts.h"
#include "common/Recordsets.h"
#include "types/Conversions.h"

namespace tsv::cli {

using Module1::NumberLiteral;
using Module1::Statement;

const std::array<std::pair<const char*, const char*>, 4> kStates = {
    {{"aberto", "?"}, {"realizado", "S"}, {"nao-realizado", "N"}, {"estornado", "E"}}};

namespace {

// Reversed entries and those that reverse them are stored alike but for their marks.
std::string NameOfState(const db::Recordset& rows) {
  std::string letter = Shown(rows.Fields("Realizado").Value());
  if (letter == "E" && !ToBoolean(rows.Fields("Estornado").Value())) return "estorno";
  for (const auto& [name, value] : kStates) {
    if (letter == value) return name;
  }
  return letter;
}

// A balance of a centre or a partner says nothing on an entry that has none.
Variant PartialBalance(const db::Recordset& rows, const char* owner, const char* balance) {
  return IsNull(rows.Fields(owner).Value()) ? Variant(Null{}) : rows.Fields(balance).Value();
}

}  // namespace

Statement SelectEntries() {
  Statement query;
  query << "SELECT Id, Data, CodConta, CodRecDesp, CodCentroCusto, IdParceiroComl, Documento, Historico, Valor, "
           "ValorPago, DataReferencia, DataVencimento, Realizado, IdConcorrencia, Estorno, Estornado, Transferencia, "
           "SaldoConta, SaldoRecDesp, SaldoCentroCusto, SaldoParceiroComl, SaldoGlobal FROM Lancamentos ";
  return query;
}

const std::vector<OutputColumn>& EntryColumns() {
  static const std::vector<OutputColumn> columns = {{"Data", "Data"},
                                                    {"Id", "Id", true},
                                                    {"Conta", "CodConta"},
                                                    {"Rec/Desp", "CodRecDesp"},
                                                    {"Centro", "CodCentroCusto"},
                                                    {"Parceiro", "IdParceiroComl", true},
                                                    {"Documento", "Documento", false, false},
                                                    {"Histórico", "Historico"},
                                                    {"Valor", "Valor", true},
                                                    {"Valor pago", "ValorPago", true, false},
                                                    {"Referência", "DataReferencia", false, false},
                                                    {"Vencimento", "DataVencimento", false, false},
                                                    {"Situação", "Realizado"},
                                                    {"Versão", "IdConcorrencia", true},
                                                    {"Estorno", "Estorno", false, false},
                                                    {"Estornado", "Estornado", false, false},
                                                    {"Transferência", "Transferencia", true, false},
                                                    {"Saldo conta", "SaldoConta", true},
                                                    {"Saldo rec/desp", "SaldoRecDesp", true},
                                                    {"Saldo centro", "SaldoCentroCusto", true},
                                                    {"Saldo parceiro", "SaldoParceiroComl", true},
                                                    {"Saldo global", "SaldoGlobal", true}};
  return columns;
}

std::vector<Variant> EntryRow(const db::Recordset& rows) {
  std::vector<Variant> row;
  for (const OutputColumn& column : EntryColumns()) {
    if (column.field == "Realizado") {
      row.emplace_back(NameOfState(rows));
    } else if (column.field == "SaldoCentroCusto") {
      row.push_back(PartialBalance(rows, "CodCentroCusto", "SaldoCentroCusto"));
    } else if (column.field == "SaldoParceiroComl") {
      row.push_back(PartialBalance(rows, "IdParceiroComl", "SaldoParceiroComl"));
    } else {
      row.push_back(rows.Fields(column.field).Value());
    }
  }
  return row;
}

std::vector<std::int32_t> WithOtherLeg(Tesovia& tesovia, std::int32_t id) {
  Statement query;
  query << "SELECT SerialSai, SerialEntra FROM Transferencias WHERE SerialSai = " << NumberLiteral(id)
        << " OR SerialEntra = " << NumberLiteral(id);
  const Module1::ScopedRecordset legs(tesovia.AbrirRecordsetTS(query.Text(), db::dbOpenSnapshot));
  if (legs->EndOfFile()) return {id};
  return {ToLong(legs->Fields("SerialSai").Value()), ToLong(legs->Fields("SerialEntra").Value())};
}

std::vector<std::shared_ptr<CLancamento>> ShowEntries(Tesovia& tesovia, const std::string& title,
                                                      const std::vector<std::int32_t>& ids) {
  Statement query;
  query << "SELECT * FROM Lancamentos WHERE Id IN (" << NumberLiteral(ids.front());
  for (std::size_t i = 1; i < ids.size(); ++i) query << ", " << NumberLiteral(ids[i]);
  query << ") ORDER BY DataId";
  const Module1::ScopedRecordset rows(tesovia.AbrirRecordsetTS(query.Text(), db::dbOpenSnapshot));
  if (rows->EndOfFile()) return {};
  std::cout << title << '\n';
  const auto writer = MakeRowWriter(OutputForm{}, EntryColumns(), std::cout);
  std::vector<std::shared_ptr<CLancamento>> shown;
  for (; !rows->EndOfFile(); rows->MoveNext()) {
    writer->Write(EntryRow(*rows));
    shown.push_back(std::make_shared<CLancamento>());
    shown.back()->CarregarDeRegistro(*rows);
  }
  writer->Finish();
  return shown;
}

}  // namespace tsv::cli
