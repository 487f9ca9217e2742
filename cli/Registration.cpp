#include "Registration.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "Arguments.h"
#include "Failure.h"
#include "common/Recordsets.h"
#include "common/Session.h"
#include "types/Conversions.h"
#include "types/Text.h"

namespace tsv::cli {

using Module1::NumberLiteral;
using Module1::Statement;
using Module1::TextLiteral;

const MasterTable kContas{"conta", "Conta", 'a', "Contas", "Codigo", false, "DesConta", "Inativa"};
const MasterTable kTipos{"receita-despesa", "Receita/despesa", 'a', "TiposMovimentacoes", "Codigo", false,
                         "DesMovimentacao", "Inativo"};
const MasterTable kCentros{"centro", "Centro de custo",  'o',      "CentrosDeCusto", "Codigo",
                           false,    "DesCentroDeCusto", "Inativo"};
const MasterTable kParceiros{"parceiro", "Parceiro", 'o', "ParceirosComerciais", "Id", true, "Nome", "Inativo"};
const MasterTable kUsuarios{"usuario", "Usuário", 'o', "Usuarios", "IdLogin", false, "DesUsuario", "Inativo"};

namespace {

void ExpectPlain(std::string_view text, const std::string& what, std::string_view forbidden, const char* advice) {
  if (!text::IsValidUtf8(text)) throw Failure(kUsage, what + ": o texto não está em UTF-8.");
  const bool hasControl = std::any_of(text.begin(), text.end(), [](unsigned char c) { return c < 0x20 || c == 0x7F; });
  if (hasControl || text.find_first_of(forbidden) != std::string_view::npos) {
    throw Failure(kRefused, what + " '" + std::string(text) + "': " + advice);
  }
}

std::string Checked(std::string_view given, const std::string& what, std::size_t limit) {
  const std::string_view text = text::Trim(given);
  if (text.empty()) throw Failure(kRefused, what + ": não pode ficar em branco.");
  if (text::Length(text) > limit) {
    throw Failure(kRefused, what + " '" + std::string(text) + "': não pode ter mais do que " + std::to_string(limit) +
                                " caracteres.");
  }
  return std::string(text);
}

// Empty: the row takes postings.
std::string WhyUnusable(const MasterTable& table, const std::string& key) {
  Statement query;
  query << "SELECT " << table.inactive << " FROM " << table.table << " WHERE " << table.key << " = "
        << (table.keyIsNumber ? NumberLiteral(NumberFrom(key)) : TextLiteral(key));
  const Module1::ScopedRecordset rows(CurrentSession().BancoDeDados->OpenRecordset(query.Text(), db::dbOpenSnapshot));
  const std::string subject = std::string(table.title) + " '" + key + "' ";
  if (rows->EndOfFile()) return subject + "não está cadastrad" + table.gender + ".";
  return ToBoolean(rows->Fields(0).Value()) ? subject + "está desativad" + table.gender + "." : std::string();
}

constexpr std::size_t kCodeLimit = 31;
constexpr std::size_t kLoginLimit = 30;
constexpr const char* kNoQuotes = "apóstrofos, aspas e caracteres de controle não são permitidos.";

}  // namespace

std::string CheckedCode(std::string_view code) {
  std::string checked = Checked(code, "Código", kCodeLimit);
  ExpectPlain(checked, "Código", "'\"*?#[]", "os caracteres * ? # [ ], apóstrofos e aspas não são permitidos.");
  if (checked == "@@@" || checked == "$@#") throw Failure(kRefused, "Código '" + checked + "': é reservado.");
  return checked;
}

std::string CheckedName(std::string_view name, const char* what, std::size_t limit) {
  std::string checked = Checked(name, what, limit);
  ExpectPlain(checked, what, "'\"", kNoQuotes);
  return checked;
}

std::string CheckedLogin(std::string_view login) { return CheckedName(login, "Login", kLoginLimit); }

// Never shown in a message, and taken to the letter, blanks included.
std::string CheckedPassword(std::string_view password) {
  if (password.empty()) throw Failure(kRefused, "A senha não pode ficar em branco.");
  if (!text::IsValidUtf8(password)) throw Failure(kUsage, "A senha não está em UTF-8.");
  if (text::Length(password) > kLoginLimit) throw Failure(kRefused, "A senha não pode ter mais do que 30 caracteres.");
  if (password.find_first_of(std::string_view("'\"\0", 3)) != std::string_view::npos) {
    throw Failure(kRefused, "Apóstrofos e aspas não são permitidos na senha.");
  }
  return std::string(password);
}

std::int32_t NextId(const MasterTable& table) {
  Statement query;
  query << "SELECT Max(Id) As UltimoId FROM " << table.table;
  const Module1::ScopedRecordset rows(CurrentSession().BancoDeDados->OpenRecordset(query.Text(), db::dbOpenSnapshot));
  const Variant last = rows->Fields("UltimoId").Value();
  return IsNull(last) ? 1 : ToLong(last) + 1;
}

void ExpectUnused(const MasterTable& table, const std::string& key) {
  Statement query;
  query << "SELECT Id FROM " << table.table << " WHERE " << table.key << " = " << TextLiteral(key);
  const Module1::ScopedRecordset rows(CurrentSession().BancoDeDados->OpenRecordset(query.Text(), db::dbOpenSnapshot));
  if (!rows->EndOfFile()) {
    throw Failure(kRefused, std::string(table.title) + " '" + key + "' já está cadastrad" + table.gender + ".");
  }
}

std::vector<std::string> CodesThatLookApart(const MasterTable& table, const std::string& code) {
  Statement query;
  query << "SELECT Codigo FROM " << table.table << " WHERE (" << TextLiteral(code)
        << " LIKE Codigo & '*' OR Codigo LIKE " << TextLiteral(code + "*") << ") AND Codigo <> " << TextLiteral(code)
        << " ORDER BY Codigo";
  const Module1::ScopedRecordset rows(CurrentSession().BancoDeDados->OpenRecordset(query.Text(), db::dbOpenSnapshot));
  std::vector<std::string> codes;
  for (; !rows->EndOfFile(); rows->MoveNext()) {
    const std::string other = ToText(rows->Fields(0).Value());
    const std::string& inner = code.size() > other.size() ? code : other;
    const auto next = static_cast<unsigned char>(inner[std::min(code.size(), other.size())]);
    if (std::isalnum(next) || next >= 0x80) codes.push_back(other);
  }
  return codes;
}

std::vector<std::string> WhyUnusable(const Classification& classification) {
  const std::pair<const MasterTable*, const std::string*> named[] = {{&kContas, &classification.account},
                                                                     {&kTipos, &classification.type},
                                                                     {&kCentros, &classification.centre},
                                                                     {&kParceiros, &classification.partner}};
  std::vector<std::string> reasons;
  for (const auto& [table, key] : named) {
    const std::string trimmed(text::Trim(*key));
    if (trimmed.empty()) continue;
    if (std::string why = WhyUnusable(*table, trimmed); !why.empty()) reasons.push_back(std::move(why));
  }
  return reasons;
}

void InsertUser(std::int32_t id, const std::string& login, const std::string& name, const std::string& password) {
  Statement insert;
  insert << "INSERT INTO Usuarios (Id, IdLogin, DesUsuario, Senha) VALUES (" << NumberLiteral(id) << ", "
         << TextLiteral(login) << ", " << TextLiteral(name) << ", " << TextLiteral(password) << ")";
  insert.Execute();
}

}  // namespace tsv::cli
