#include "importing/CsvFile.h"

#include <algorithm>
#include <limits>

#include "Failure.h"
#include "types/Text.h"

namespace tsv::cli {
namespace {

constexpr std::size_t kLongestLine = std::size_t{64} * 1024;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

struct Row {
  std::vector<std::string> fields;
  bool isComplete = false;
};

void AddField(void* text, std::size_t length, void* row) {
  static_cast<Row*>(row)->fields.emplace_back(static_cast<const char*>(text), text ? length : 0);
}

void EndRow(int /*terminator*/, void* row) { static_cast<Row*>(row)->isComplete = true; }

// Semicolons where the header has any: spreadsheets here write them, because the comma begins the decimals.
unsigned char DelimiterOf(std::string_view header) { return header.find(';') != std::string_view::npos ? ';' : ','; }

}  // namespace

CsvFile::CsvFile(const std::string& path) : file_(path, std::ios::binary | std::ios::ate), buffer_(kLongestLine, '\0') {
  if (!file_) throw Failure(kFailed, "Não foi possível ler '" + path + "'.");
  size_ = file_.tellg();
  file_.seekg(0);
  if (!file_ || size_ < 0) throw Failure(kFailed, "'" + path + "' não é um arquivo que se possa reler.");
  if (csv_init(&parser_, CSV_STRICT) != 0) throw Failure(kFailed, "Não foi possível preparar a leitura do arquivo.");
}

CsvFile::~CsvFile() { csv_free(&parser_); }

std::optional<CsvLine> CsvFile::Next() {
  for (CsvLine line; ReadLine(line); line = CsvLine()) {
    if (!hasDelimiter_ && line.error.empty()) {
      if (text_.starts_with(kByteOrderMark)) text_.erase(0, kByteOrderMark.size());
      csv_set_delim(&parser_, DelimiterOf(text_));
    }
    if (line.error.empty()) Split(line);
    const bool isBlank = std::all_of(line.fields.begin(), line.fields.end(), [](const auto& f) { return f.empty(); });
    if (!line.error.empty() || !isBlank) {
      hasDelimiter_ = true;
      return line;
    }
  }
  if (file_.bad()) throw Failure(kFailed, "O arquivo não pôde ser lido até o fim.");
  return std::nullopt;
}

bool CsvFile::ReadLine(CsvLine& line) {
  file_.getline(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
  const auto length = static_cast<std::size_t>(file_.gcount());
  if (length == 0) return false;
  read_ += static_cast<std::int64_t>(length);
  line.number = ++number_;
  const bool isCut = file_.fail();
  if (isCut) {
    file_.clear();
    file_.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
    read_ += file_.gcount();
    line.error = "linha longa demais.";
    return true;
  }
  text_.assign(buffer_.data(), file_.eof() ? length : length - 1);
  if (!text::IsValidUtf8(text_)) {
    line.error = "o texto não está em UTF-8.";
  } else if (text_.find('\0') != std::string::npos) {
    line.error = "há um caractere nulo na linha.";
  }
  return true;
}

void CsvFile::Split(CsvLine& line) {
  Row row;
  text_ += '\n';
  const bool isParsed = csv_parse(&parser_, text_.data(), text_.size(), AddField, EndRow, &row) == text_.size();
  line.fields = std::move(row.fields);
  if (isParsed && row.isComplete) return;
  const bool isEmpty = text_.find_first_not_of(" \t\r\n") == std::string::npos;
  if (isParsed && isEmpty) return;
  line.fields.clear();
  line.error = "aspas fora do lugar ou não fechadas na mesma linha.";
  const unsigned char delimiter = csv_get_delim(&parser_);
  csv_free(&parser_);
  csv_init(&parser_, CSV_STRICT);
  csv_set_delim(&parser_, delimiter);
}

}  // namespace tsv::cli
