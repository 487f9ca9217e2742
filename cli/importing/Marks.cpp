#include "importing/Marks.h"

#include <array>

#include "common/Recordsets.h"
#include "common/Session.h"
#include "common/Statement.h"
#include "types/Conversions.h"
#include "types/Text.h"

namespace tsv::cli {

using Module1::NumberLiteral;
using Module1::Statement;
using Module1::TextLiteral;

namespace {

constexpr std::size_t kLongestIdentity = 200;

// FNV-1a over 128 bits.
class Fingerprint {
 public:
  void Add(std::string_view text) {
    for (const char c : text) Add(static_cast<unsigned char>(c));
    Add(0xFF);  // never part of UTF-8: where one field ends and the next begins
  }

  std::string Hex() const {
    std::string hex;
    for (int shift = 124; shift >= 0; shift -= 4)
      hex += "0123456789abcdef"[static_cast<unsigned>(hash_ >> shift) & 15u];
    return hex;
  }

 private:
  __extension__ using Wide = unsigned __int128;

  void Add(unsigned char byte) { hash_ = (hash_ ^ byte) * kPrime; }

  static constexpr Wide kPrime = (Wide{1} << 88) + 0x13B;
  Wide hash_ = (Wide{0x6C62272E07BB0142} << 64) + 0x62B821756295C58D;
};

}  // namespace

Marks::Marks(std::string identity) : identity_(std::move(identity)) {
  const bool isUsable = !identity_.empty() && text::Length(identity_) <= kLongestIdentity &&
                        text::IsValidUtf8(identity_) && identity_.find_first_of("'\"") == std::string::npos;
  if (!isUsable) {
    throw Failure(kUsage,
                  "Identidade de arquivo inválida: '" + identity_ +
                      "'. Informe outra com --identidade: até 200 caracteres em UTF-8, sem apóstrofos nem aspas.");
  }
}

void Marks::Load(std::int32_t first, std::int32_t last) {
  loaded_.clear();
  Statement query;
  query << "SELECT Linha, Conteudo FROM LinhasImportadas WHERE Identidade = " << TextLiteral(identity_)
        << " AND Linha >= " << NumberLiteral(first) << " AND Linha <= " << NumberLiteral(last);
  const Module1::ScopedRecordset rows(
      CurrentSession().BancoDeDados->OpenRecordset(query.Text(), db::dbOpenForwardOnly));
  for (; !rows->EndOfFile(); rows->MoveNext()) {
    loaded_[ToLong(rows->Fields("Linha").Value())] = ToText(rows->Fields("Conteudo").Value());
  }
}

const std::string* Marks::Find(std::int32_t line) const {
  const auto mark = loaded_.find(line);
  return mark == loaded_.end() ? nullptr : &mark->second;
}

void Marks::Set(std::int32_t line, const std::string& digest, std::int32_t entryId) {
  Statement insert;
  insert << "INSERT INTO LinhasImportadas (Identidade, Linha, Conteudo, IdLancamento) VALUES ("
         << TextLiteral(identity_) << ", " << NumberLiteral(line) << ", " << TextLiteral(digest) << ", "
         << NumberLiteral(entryId) << ")";
  insert.Execute();
}

std::string DigestOf(const TypedEntry& entry) {
  Fingerprint fingerprint;
  for (const std::string* field : {&entry.data, &entry.referencia, &entry.valor, &entry.historico, &entry.conta,
                                   &entry.recDesp, &entry.centro, &entry.parceiro, &entry.documento}) {
    fingerprint.Add(*field);
  }
  return fingerprint.Hex();
}

}  // namespace tsv::cli
